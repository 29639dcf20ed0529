import QtQuick
import QtQuick.Layouts
import Varnet

// Takes files that are dropped anywhere on the window, and says so while they are above it.
DropArea {
    id: root

    required property AppCommands commands

    onEntered: drag => drag.accepted = root.commands.canImport(drag.urls)
    onDropped: drop => {
        drop.accept(Qt.CopyAction) // the one who moves a file deletes it afterwards
        root.commands.importFiles(drop.urls)
    }

    Rectangle {
        anchors.fill: parent
        color: Qt.alpha(Theme.window, 0.92)
        opacity: root.containsDrag ? 1 : 0
        visible: opacity > 0

        Behavior on opacity {
            NumberAnimation { duration: Theme.motion }
        }

        Rectangle {
            anchors.fill: parent
            anchors.margins: 2 * Theme.unit
            border.color: Theme.accent
            border.width: 2
            color: "transparent"
            radius: Theme.cardRadius
        }

        ColumnLayout {
            anchors.centerIn: parent
            spacing: 2 * Theme.unit
            width: parent.width - 16 * Theme.unit

            Icon {
                Layout.alignment: Qt.AlignHCenter
                color: Theme.accent
                sourceSize: Qt.size(2 * Theme.symbol, 2 * Theme.symbol)
                symbol: "import"
            }

            ThemedText {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                text: qsTr("Drop to import")
                type: Theme.heading
            }

            ThemedText {
                Layout.fillWidth: true
                color: Theme.secondary
                horizontalAlignment: Text.AlignHCenter
                text: root.commands.importDelay
                visible: text !== ""
            }
        }
    }
}
