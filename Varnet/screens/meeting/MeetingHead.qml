import QtQuick
import QtQuick.Layouts
import Varnet

// What a meeting is: its title, its state, when it was and who was there.
ColumnLayout {
    id: root

    required property AppCommands commands
    required property MeetingPage page
    property bool narrow: false // the state stands below the title

    spacing: 0

    component State: Badge {
        marked: root.page.badgeMarked
        text: root.page.badgeText
        tone: root.page.badgeTone
    }

    RowLayout {
        Layout.leftMargin: -2 * Theme.unit
        spacing: Theme.unit

        IconButton {
            symbol: "back"
            text: qsTr("Back to all meetings")
            onClicked: root.commands.showLibrary()
        }

        // The width that a long title would like to have is none of the row's business.
        Item {
            Layout.fillWidth: true
            implicitHeight: titleField.implicitHeight

            TitleField {
                id: titleField

                anchors.fill: parent
                title: root.page.title
                onRenamed: title => root.page.rename(title)

                Connections {
                    function onAboutToLeave() {
                        titleField.focus = false
                    }

                    target: root.page
                }
            }
        }

        State {
            Layout.leftMargin: 4 * Theme.unit
            visible: !root.narrow
        }
    }

    State {
        Layout.leftMargin: 10 * Theme.unit
        visible: root.narrow
    }

    ThemedText {
        Layout.fillWidth: true
        Layout.leftMargin: 10 * Theme.unit
        color: Theme.secondary
        text: root.page.dateLine
    }

    ThemedText {
        Layout.fillWidth: true
        Layout.leftMargin: 10 * Theme.unit
        color: Theme.secondary
        text: root.page.attendeesLine
        visible: text !== ""
    }

    RowLayout {
        Layout.leftMargin: 10 * Theme.unit
        Layout.topMargin: Theme.unit
        spacing: 1.5 * Theme.unit
        visible: root.page.shortfallText !== ""

        Icon {
            color: Theme.amber
            symbol: "warning"
        }

        ThemedText {
            Layout.fillWidth: true
            color: Theme.amber
            text: root.page.shortfallText
        }
    }
}
