import QtQuick
import QtQuick.Layouts
import Varnet

// The engines, and what to do when one is missing.
StepPage {
    id: root

    explanation: qsTr("Two engines on this computer do the writing. Recording works without them: the audio is kept and can be transcribed later.")
    heading: qsTr("Engines")

    EngineCard {
        Layout.fillWidth: true
        engine: root.frame.sidebar.speech
        name: qsTr("Speech engine")
        purpose: qsTr("Writes down what is said. It starts with the app.")
    }

    EngineCard {
        Layout.fillWidth: true
        engine: root.frame.sidebar.notes
        name: qsTr("Notes engine")
        purpose: qsTr("Drafts the notes. It starts when you ask for notes, stops after 10 minutes without use, and never runs while recording.")
    }

    PlainButton {
        text: qsTr("Choose the folder of the engines…")
        visible: root.frame.sidebar.speech.detail !== "" || root.frame.sidebar.notes.detail !== ""
        onClicked: chooser.choose()

        RuntimeChooser {
            id: chooser

            settings: root.frame.settings
        }
    }

    ThemedText {
        Layout.fillWidth: true
        color: Theme.rec
        text: root.frame.settings.problem
        visible: text !== ""
        wrapMode: Text.Wrap
    }
}
