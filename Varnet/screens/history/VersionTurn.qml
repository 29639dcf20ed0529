import QtQuick
import QtQuick.Layouts
import Varnet

// One turn of a version.
Rectangle {
    id: root

    required property string speaker
    required property int hue
    required property string clock
    required property string words
    required property string spoken
    property bool focused: false

    Accessible.focused: focused
    Accessible.name: spoken
    Accessible.role: Accessible.ListItem
    border.color: Theme.accent
    border.width: focused ? 1 : 0
    color: "transparent"
    implicitHeight: column.implicitHeight + 3 * Theme.unit
    radius: Theme.controlRadius

    Column {
        id: column

        anchors.left: parent.left
        anchors.leftMargin: 3 * Theme.unit
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter

        RowLayout {
            LayoutMirroring.childrenInherit: true
            LayoutMirroring.enabled: said.effectiveHorizontalAlignment === Text.AlignRight
            spacing: 2 * Theme.unit
            width: parent.width

            BareText {
                Layout.maximumWidth: Math.ceil(implicitWidth)
                color: root.hue < 0 ? Theme.faint : Theme.speakers[root.hue]
                text: root.speaker
                type: Theme.emphasis
            }

            BareText {
                Layout.fillWidth: true
                color: Theme.faint
                horizontalAlignment: Text.AlignLeft
                lineHeight: Theme.emphasis.lineHeight
                text: root.clock
                type: Theme.caption
            }
        }

        BareText {
            id: said

            text: root.words
            width: column.width
            wrapMode: Text.Wrap
        }
    }
}
