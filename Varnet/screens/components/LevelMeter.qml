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

    spacing: 2 * Theme.unit

    Icon {
        color: Theme.secondary
        symbol: root.symbol
    }

    ThemedText {
        Accessible.ignored: true
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
            implicitHeight: 1.5 * Theme.unit
            radius: height / 2
        }
        contentItem: Item {
            implicitHeight: 1.5 * Theme.unit

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
