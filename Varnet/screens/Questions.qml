import QtQuick
import Varnet

// What the window asks: before it closes or the program ends, and before a transcript is replaced.
Item {
    id: root

    required property MainWindow frame
    required property MeetingAppDelegate delegate
    required property AppCommands commands
    required property AppRouter router

    Ask {
        explanation: qsTr("The latest edits are still in this app's memory. Make storage available and retry saving. The app will stay open if saving still fails.")
        firstAnswer: qsTr("Keep app open")
        question: qsTr("Some meeting changes have not been saved")
        secondAnswer: qsTr("Retry saving and quit")
        visible: root.delegate.askingToSave
        onDismissed: root.delegate.keepOpen()
        onFirst: root.delegate.keepOpen()
        onSecond: root.delegate.retrySavingAndQuit()
    }

    Ask {
        cancellable: true
        explanation: root.frame.closeNotice
        firstAnswer: qsTr("Quit")
        question: qsTr("%1 keeps running without its window").arg(Qt.application.displayName)
        secondAnswer: qsTr("Close the window")
        visible: root.frame.askingToClose
        onDismissed: root.frame.cancelClosing()
        onFirst: {
            root.frame.cancelClosing()
            root.delegate.quit()
        }
        onSecond: root.frame.close()
    }

    Ask {
        explanation: qsTr("This replaces transcript corrections and speaker names after successful transcription. You can restore the current version from Version history. Your notes stay unchanged.")
        firstAnswer: qsTr("Cancel")
        question: qsTr("Transcribe saved audio again?")
        secondAnswer: qsTr("Transcribe again")
        visible: root.router.retrying !== ""
        onDismissed: root.commands.dismissTranscribeAgain()
        onFirst: root.commands.dismissTranscribeAgain()
        onSecond: root.commands.transcribeAgain()
    }
}
