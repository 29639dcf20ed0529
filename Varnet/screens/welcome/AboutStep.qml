import QtQuick
import QtQuick.Layouts
import Varnet

// What the application does, and where its files live.
StepPage {
    id: root

    explanation: qsTr("%1 records your meetings, writes down what is said and drafts the notes. All of it happens on this computer.").arg(Qt.application.displayName)
    heading: qsTr("Welcome to %1").arg(Qt.application.displayName)

    StepPoint {
        Layout.fillWidth: true
        detail: qsTr("Your microphone and the sound of the call, as two tracks of one recording.")
        symbol: "microphone"
        text: qsTr("Both sides of the call")
    }

    StepPoint {
        Layout.fillWidth: true
        detail: qsTr("The transcript appears while people speak. Every word can be corrected afterwards.")
        symbol: "meetings"
        text: qsTr("A transcript as you go")
    }

    StepPoint {
        Layout.fillWidth: true
        detail: qsTr("Each point of the draft shows the words it rests on. What the transcript doesn't say is left out.")
        symbol: "check"
        text: qsTr("Notes you can check")
    }

    StepPoint {
        Layout.fillWidth: true
        detail: root.frame.settings.problem || qsTr("Recordings, transcripts and notes are files in one folder:\n%1").arg(root.frame.onboarding.folder)
        symbol: "folder"
        text: qsTr("Files of your own")

        PlainButton {
            text: qsTr("Show folder")
            onClicked: root.frame.settings.showMeetings()
        }
    }
}
