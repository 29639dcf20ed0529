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

    GridLayout {
        Layout.leftMargin: -2 * Theme.unit
        columnSpacing: Theme.unit
        rowSpacing: 0

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
                visible: root.page.present
                onRenamed: title => root.page.rename(title)

                Connections {
                    function onAboutToLeave() {
                        titleField.focus = false
                    }

                    target: root.page
                }
            }
        }

        Badge {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            Layout.column: root.narrow ? 1 : 2
            Layout.leftMargin: (root.narrow ? 2 : 4) * Theme.unit
            Layout.row: root.narrow ? 1 : 0
            marked: root.page.badgeMarked
            text: root.page.badgeText
            tone: root.page.badgeTone
        }
    }

    ThemedText {
        Layout.fillWidth: true
        Layout.leftMargin: 5 * Theme.unit + Theme.symbol
        color: Theme.secondary
        maximumLineCount: 2
        text: root.page.dateLine
        wrapMode: root.narrow ? Text.Wrap : Text.NoWrap
    }

    ThemedText {
        id: attendees

        Layout.fillWidth: true
        Layout.leftMargin: 5 * Theme.unit + Theme.symbol
        color: Theme.secondary
        text: root.page.attendeesLine
        visible: text !== ""

        transform: Lift {
            words: attendees
        }
    }

    RowLayout {
        Layout.leftMargin: 5 * Theme.unit + Theme.symbol
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
