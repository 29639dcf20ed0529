import QtQuick
import QtQuick.Layouts
import Varnet

// The body of the version history: the list at the left, the chosen version at the right.
FocusScope {
    id: root

    required property VersionHistory history

    NothingHere {
        text: root.history.loading ? qsTr("Reading the versions…")
                                   : qsTr("No versions yet. One is kept before this meeting is transcribed again, its notes are written again, or content is restored.")
        visible: root.history.count === 0 && root.history.error === ""
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        VersionList {
            Layout.fillHeight: true
            Layout.margins: 2 * Theme.unit
            Layout.maximumWidth: Math.min(13 * Theme.body.lineHeight, 0.34 * root.width)
            Layout.minimumWidth: Layout.maximumWidth
            history: root.history
            visible: root.history.count > 0 || root.history.unreadableText !== ""
        }

        Rectangle {
            Layout.fillHeight: true
            color: Theme.line
            implicitWidth: 1
            visible: root.history.count > 0
        }

        ColumnLayout {
            Layout.fillHeight: true
            Layout.fillWidth: true
            spacing: 3 * Theme.unit

            ScrollArea {
                Layout.fillHeight: true
                Layout.fillWidth: true
                contentHeight: Math.max(height, side.implicitHeight)
                interactive: contentHeight > height
                telling: true
                visible: root.history.count > 0

                ColumnLayout {
                    id: side

                    height: parent.height
                    spacing: 0
                    width: parent.width

                    VersionPreview {
                        Layout.fillHeight: true
                        Layout.fillWidth: true
                        Layout.leftMargin: 3 * Theme.unit
                        Layout.minimumHeight: 5 * Theme.body.lineHeight
                        Layout.rightMargin: 3 * Theme.unit
                        Layout.topMargin: 2 * Theme.unit
                        history: root.history
                    }

                    Rectangle {
                        Layout.fillWidth: true
                        color: Theme.line
                        implicitHeight: 1
                    }

                    RestoreChoices {
                        Layout.fillWidth: true
                        Layout.leftMargin: 6 * Theme.unit
                        Layout.rightMargin: 6 * Theme.unit
                        Layout.topMargin: 3 * Theme.unit
                        history: root.history
                    }
                }
            }

            Banner {
                Layout.fillWidth: true
                Layout.leftMargin: 6 * Theme.unit
                Layout.rightMargin: 6 * Theme.unit
                message: root.history.error
                visible: message !== ""
            }

            RowLayout {
                Layout.bottomMargin: 4 * Theme.unit
                Layout.leftMargin: 6 * Theme.unit
                Layout.rightMargin: 6 * Theme.unit
                spacing: 3 * Theme.unit
                visible: root.history.count > 0

                ThemedText {
                    Accessible.role: Accessible.AlertMessage
                    Layout.fillWidth: true
                    color: Theme.ok
                    text: root.history.notice
                    visible: text !== "" // its appearance is what screen readers announce
                }

                Item {
                    Layout.fillWidth: true
                    visible: root.history.notice === ""
                }

                PrimaryButton {
                    enabled: root.history.restoreEnabled
                    text: qsTr("Restore")
                    onClicked: root.history.restore()
                }
            }
        }
    }
}
