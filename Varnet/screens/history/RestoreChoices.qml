import QtQuick
import QtQuick.Layouts
import Varnet

// What to take back from the chosen version.
ColumnLayout {
    id: root

    required property VersionHistory history

    spacing: 0

    ThemedText {
        Accessible.role: Accessible.Heading
        Layout.bottomMargin: Theme.unit
        Layout.fillWidth: true
        text: qsTr("Restore from this version")
        type: Theme.emphasis
    }

    ThemedCheckBox {
        Layout.fillWidth: true
        checked: root.history.transcript.taken
        detail: root.history.transcript.words
        enabled: root.history.transcript.enabled
        text: qsTr("Transcript")
        onToggled: root.history.takeTranscript(checked)
    }

    ThemedCheckBox {
        Layout.fillWidth: true
        checked: root.history.personalNotes.taken
        detail: root.history.personalNotes.words
        enabled: root.history.personalNotes.enabled
        objectName: "personalNotes"
        text: qsTr("Personal notes")
        onToggled: root.history.takePersonalNotes(checked)
    }

    ThemedCheckBox {
        Layout.fillWidth: true
        checked: root.history.generatedNotes.taken
        detail: root.history.generatedNotes.words
        enabled: root.history.generatedNotes.enabled
        text: qsTr("Generated notes")
        onToggled: root.history.takeGeneratedNotes(checked)
    }
}
