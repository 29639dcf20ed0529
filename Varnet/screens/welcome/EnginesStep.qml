import QtQuick
import QtQuick.Layouts
import Varnet

// The engines, and what to do when one is missing.
StepPage {
    id: root

    explanation: qsTr("Two engines do the work on this computer. The speech engine starts with the app. The notes engine starts when you ask for notes.")
    heading: qsTr("Engines")

    EngineCard {
        Layout.fillWidth: true
        engine: root.frame.sidebar.speech
        name: qsTr("Speech engine")
    }

    EngineCard {
        Layout.fillWidth: true
        engine: root.frame.sidebar.notes
        name: qsTr("Notes engine")
    }
}
