import QtQuick
import QtQuick.Layouts
import Varnet

// Whether the microphone is heard.
StepPage {
    id: root

    explanation: qsTr("Say something and watch the meter. None of it is recorded.")
    heading: qsTr("Your microphone")
    skips: !frame.soundCheck.heard

    SoundCard {
        Layout.fillWidth: true
        check: root.frame.soundCheck
        name: qsTr("Microphone")
        symbol: "microphone"
    }

    StepHint {
        Layout.fillWidth: true
        text: qsTr("%1 uses the microphone that is chosen in the sound settings of your desktop.").arg(Qt.application.displayName)
    }
}
