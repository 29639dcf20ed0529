import QtQuick
import QtQuick.Layouts
import Varnet

// Whether what the computer plays is heard.
StepPage {
    id: root

    explanation: qsTr("Meeting audio records the other people in the call from Zoom, Meet, Teams or any app. Use headphones to avoid echo.")
    heading: qsTr("Meeting audio")
    skips: !frame.soundCheck.heard

    SoundCard {
        Layout.fillWidth: true
        check: root.frame.soundCheck
        name: qsTr("Meeting audio")
        symbol: "call"

        PlainButton {
            enabled: root.frame.soundCheck.listening
            text: qsTr("Play a test sound")
            onClicked: root.frame.soundCheck.playTestSound()
        }
    }

    StepHint {
        Layout.fillWidth: true
        text: qsTr("The meter shows what this computer plays, which is what a recording would hear. None of it is recorded now.")
    }
}
