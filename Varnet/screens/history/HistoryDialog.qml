import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Varnet

// The saved versions of a meeting: the list, a preview of the chosen one, and what to take back from it. It is made anew
// each time it opens.
Dialog {
    id: root

    required property AppCommands commands
    required property VersionHistory history

    anchors.centerIn: T.Overlay.overlay
    closePolicy: Popup.NoAutoClose
    focus: true
    height: Math.min(170 * Theme.unit, T.Overlay.overlay ? T.Overlay.overlay.height - 12 * Theme.unit : 0)
    modal: true
    padding: 0
    title: qsTr("Version history")
    width: Math.min(250 * Theme.unit, T.Overlay.overlay ? T.Overlay.overlay.width - 16 * Theme.unit : 0)

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

        Keys.onEscapePressed: root.commands.closeHistory()

        sourceComponent: ColumnLayout {
            spacing: 0

            RowLayout {
                Layout.bottomMargin: 3 * Theme.unit
                Layout.leftMargin: 6 * Theme.unit
                Layout.rightMargin: 4 * Theme.unit
                Layout.topMargin: 4 * Theme.unit

                ColumnLayout {
                    spacing: 0

                    ThemedText {
                        Accessible.role: Accessible.Heading
                        Layout.fillWidth: true
                        text: root.title
                        type: Theme.heading
                    }

                    ThemedText {
                        Layout.fillWidth: true
                        color: Theme.secondary
                        text: root.history.title
                    }
                }

                IconButton {
                    Layout.alignment: Qt.AlignTop
                    symbol: "close"
                    text: qsTr("Close")
                    onClicked: root.commands.closeHistory()
                }
            }

            Rectangle {
                Layout.fillWidth: true
                color: Theme.line
                implicitHeight: 1
            }

            Versions {
                Layout.fillHeight: true
                Layout.fillWidth: true
                focus: true
                history: root.history
            }
        }
    }
}
