import QtQuick
import QtQuick.Layouts
import Varnet

// A setting: its name, what there is to know about it in `detail`, and its controls at the end of the row, or below the
// words where these leave no room.
Item {
    id: root

    default property alias controls: place.data
    property string detail
    readonly property int gap: 2 * Theme.unit
    readonly property bool mirrored: LayoutMirroring.enabled
    readonly property bool stacked: width < place.implicitWidth + 13 * Theme.body.lineHeight
    required property string text

    implicitHeight: stacked ? words.height + gap + place.height : Math.max(words.height, place.height, Theme.body.lineHeight + 2 * Theme.unit)
    implicitWidth: place.implicitWidth + 13 * Theme.body.lineHeight

    Column {
        id: words

        anchors.left: parent.left
        anchors.verticalCenter: root.stacked ? undefined : parent.verticalCenter
        width: root.stacked ? parent.width : parent.width - place.width - 2 * root.gap

        ThemedText {
            text: root.text
            width: parent.width
            wrapMode: Text.Wrap
        }

        ThemedText {
            color: Theme.secondary
            text: root.detail
            type: Theme.caption
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
    }

    RowLayout {
        id: place

        spacing: 2 * Theme.unit
        width: Math.min(implicitWidth, parent.width)
        x: root.stacked === root.mirrored ? parent.width - width : 0
        y: root.stacked ? words.height + root.gap : (parent.height - height) / 2
    }
}
