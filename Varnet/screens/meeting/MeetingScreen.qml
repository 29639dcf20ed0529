import QtQuick
import QtQuick.Layouts
import Varnet

// One meeting: its head, what is heard while it is live, and the transcript.
FocusScope {
    id: root

    required property AppCommands commands
    required property MeetingPage page

    ColumnLayout {
        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.topMargin: 6 * Theme.unit
        spacing: 3 * Theme.unit
        width: Math.min(220 * Theme.unit, root.width - 16 * Theme.unit)

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: -2 * Theme.unit
            spacing: Theme.unit

            IconButton {
                symbol: "back"
                text: qsTr("Back to all meetings")
                onClicked: root.commands.showLibrary()
            }

            TitleField {
                id: titleField

                Layout.fillWidth: true
                title: root.page.title
                onRenamed: title => root.page.rename(title)

                Connections {
                    function onAboutToLeave() {
                        titleField.focus = false
                    }

                    target: root.page
                }
            }

            Badge {
                Layout.leftMargin: 4 * Theme.unit
                marked: root.page.badgeMarked
                text: root.page.badgeText
                tone: root.page.badgeTone
            }
        }

        ThemedText {
            Layout.fillWidth: true
            Layout.leftMargin: 10 * Theme.unit
            Layout.topMargin: -3 * Theme.unit
            color: Theme.secondary
            text: root.page.dateLine
        }

        LiveStrip {
            Layout.fillWidth: true
            page: root.page
            visible: root.page.live
        }

        Banner {
            Layout.fillWidth: true
            message: root.page.callMissingText
            tone: 1
            visible: root.page.callMissing
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.topMargin: Theme.unit
            color: Theme.line
            implicitHeight: 1
            visible: !root.page.live
        }

        TranscriptView {
            Layout.fillHeight: true
            Layout.fillWidth: true
            focus: true
            page: root.page
        }
    }
}
