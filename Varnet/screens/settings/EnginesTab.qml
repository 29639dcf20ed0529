import QtQuick
import QtQuick.Layouts
import Varnet

// The two engines: how they are, where they are, and what can be done about them.
ColumnLayout {
    id: root

    required property SettingsState settings

    spacing: 4 * Theme.unit

    SettingsRow {
        Layout.fillWidth: true
        detail: root.settings.speech.detail
        text: qsTr("Speech engine")

        Badge {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            marked: true
            text: root.settings.speech.words
            tone: root.settings.speech.tone
        }
    }

    SettingsRow {
        Layout.fillWidth: true
        detail: root.settings.notes.detail
        text: qsTr("Notes engine")

        Badge {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            marked: true
            text: root.settings.notes.words
            tone: root.settings.notes.tone
        }
    }

    SettingsRow {
        Layout.fillWidth: true
        detail: root.settings.runtimeRoot
        text: qsTr("Engine folder")

        PlainButton {
            text: qsTr("Choose…")
            onClicked: chooser.choose()
        }
    }

    SettingsRow {
        Layout.fillWidth: true
        detail: root.settings.fastModeCrashed ? qsTr("The fast mode crashed on this Mac once, so transcripts switched to the slower processor mode.") : ""
        text: qsTr("Speed")
        visible: root.settings.slow

        ThemedText {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            color: Theme.secondary
            text: qsTr("Slow mode (processor)")
        }

        PlainButton {
            enabled: !root.settings.recording
            text: qsTr("Try fast mode again")
            visible: root.settings.fastModeCrashed
            onClicked: root.settings.tryFastMode()
        }
    }

    Flow {
        Layout.fillWidth: true
        spacing: 2 * Theme.unit

        PlainButton {
            enabled: root.settings.speechStartable
            text: qsTr("Start speech engine")
            onClicked: root.settings.startSpeech()
        }

        PlainButton {
            text: qsTr("Show engine logs")
            onClicked: root.settings.showLogs()
        }
    }

    Explanation {
        text: qsTr("The speech engine starts with the app. The notes engine starts when you ask for notes, stops after 10 minutes without use, and never runs while recording.")
    }

    RuntimeChooser {
        id: chooser

        settings: root.settings
    }
}
