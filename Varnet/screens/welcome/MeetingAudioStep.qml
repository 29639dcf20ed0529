import QtQuick
import QtQuick.Layouts
import Varnet

// Whether what the computer plays is heard.
StepPage {
    explanation: qsTr("Meeting audio records the other people in the call from Zoom, Meet, Teams or any app. Use headphones to avoid echo.")
    heading: qsTr("Meeting audio")
}
