import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Varnet

// All keys of the application, to be read.
Dialog {
    id: root

    anchors.centerIn: T.Overlay.overlay
    focus: true
    height: Math.min(170 * Theme.unit, T.Overlay.overlay ? T.Overlay.overlay.height - 12 * Theme.unit : 0)
    modal: true
    padding: 0
    parent: T.Overlay.overlay
    title: qsTr("Keyboard shortcuts")
    width: Math.min(28 * Theme.body.lineHeight, T.Overlay.overlay ? T.Overlay.overlay.width - 16 * Theme.unit : 0)

    T.Overlay.modal: Rectangle {
        color: Qt.alpha(Theme.window, 0.75)
    }
    header: Item {}
    background: Rectangle {
        border.color: Theme.line
        border.width: 1
        color: Theme.surface
        radius: Theme.cardRadius
    }
    contentItem: Loader {
        active: root.visible
        focus: true

        sourceComponent: ColumnLayout {
            spacing: 0

            RowLayout {
                Layout.bottomMargin: 3 * Theme.unit
                Layout.leftMargin: 6 * Theme.unit
                Layout.rightMargin: 4 * Theme.unit
                Layout.topMargin: 4 * Theme.unit

                ThemedText {
                    Accessible.name: text
                    Accessible.role: Accessible.Heading
                    Layout.fillWidth: true
                    text: root.title
                    type: Theme.heading
                }

                IconButton {
                    symbol: "close"
                    text: qsTr("Close")
                    onClicked: root.close()
                }
            }

            Rectangle {
                Layout.fillWidth: true
                color: Theme.line
                implicitHeight: 1
            }

            KeysList {
                Layout.fillHeight: true
                Layout.fillWidth: true
                focus: true
            }
        }
    }
}
