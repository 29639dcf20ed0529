import QtQuick
import QtQuick.Layouts
import Varnet

// Whether the microphone is heard.
StepPage {
    explanation: qsTr("Say something and watch the meter. Nothing is recorded.")
    heading: qsTr("Your microphone")
}
