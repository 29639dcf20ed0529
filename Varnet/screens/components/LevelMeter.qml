import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// The loudness of one track, from 0 to 1, with its name.
RowLayout {
    id: root

    required property string name
    required property string symbol
    property alias level: bar.value
    property real longest: 45 * Theme.unit
    property real nameWidth: 0 // at least
    readonly property real ownNameWidth: words.implicitWidth

    spacing: 2 * Theme.unit

    Icon {
        color: Theme.secondary
        symbol: root.symbol
    }

    BareText {
        id: words

        Layout.minimumWidth: root.nameWidth
        color: Theme.secondary
        text: root.name
        type: Theme.caption
    }

    ProgressBar {
        id: bar

        Accessible.description: value > 0.02 ? qsTr("Something is heard") : qsTr("Silent")
        Accessible.name: qsTr("%1 level").arg(root.name)
        Layout.fillWidth: true
        Layout.maximumWidth: root.longest
        Layout.minimumWidth: 15 * Theme.unit
        Layout.preferredWidth: 35 * Theme.unit

        background: Rectangle {
            color: Theme.track
            implicitHeight: 0.375 * Theme.symbol
            radius: height / 2
        }
        contentItem: Item {
            implicitHeight: 0.375 * Theme.symbol

            Rectangle {
                color: Theme.ok
                height: parent.height
                radius: height / 2
                visible: width >= height
                width: bar.visualPosition * parent.width
            }
        }
    }
}
