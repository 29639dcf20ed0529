import QtQuick
import QtQuick.Layouts
import Varnet

// Where the meetings are kept, and for how long the deleted ones.
ColumnLayout {
    id: root

    required property AppCommands commands
    required property SettingsState settings

    spacing: 4 * Theme.unit

    SettingsRow {
        Layout.fillWidth: true
        text: qsTr("Meetings")

        PlainButton {
            text: qsTr("Show in Finder")
            onClicked: root.settings.showMeetings()
        }
    }

    Explanation {
        text: qsTr("Deleted meetings stay in Recently deleted for 30 days, then their audio, transcript and notes are erased from this Mac.")
    }

    PlainButton {
        enabled: !root.settings.recording // whose clock and end it would cover
        text: qsTr("Show welcome again")
        onClicked: {
            root.commands.closeSettings()
            root.settings.showWelcome()
        }
    }
}
