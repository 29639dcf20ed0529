import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// The welcome flow: one step after the other, in place of everything else in the window.
FocusScope {
    id: root

    required property MainWindow frame

    Shortcut {
        enabled: !root.frame.onboarding.first
        sequences: [StandardKey.Back]
        onActivated: root.frame.onboarding.back()
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.window
    }

    RowLayout {
        id: head

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.topMargin: 5 * Theme.unit
        spacing: 2 * Theme.unit
        width: Math.min(62 * Theme.body.lineHeight, parent.width - 10 * Theme.unit)

        BrandMark {}

        ThemedText {
            Layout.fillWidth: true
            text: Qt.application.displayName
            type: Theme.heading
        }

        QuietButton {
            Layout.rightMargin: -2 * Theme.unit // its words end where the button at the foot does
            text: qsTr("Skip the welcome")
            onClicked: root.frame.onboarding.finish()
        }
    }

    Component {
        id: about

        AboutStep {
            frame: root.frame
        }
    }

    Component {
        id: microphone

        MicrophoneStep {
            frame: root.frame
        }
    }

    Component {
        id: meetingAudio

        MeetingAudioStep {
            frame: root.frame
        }
    }

    Component {
        id: engines

        EnginesStep {
            frame: root.frame
        }
    }

    // Each step is made anew, so that a screen reader hears where the focus went.
    Loader {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        anchors.topMargin: 2 * Theme.unit
        focus: true
        sourceComponent: [about, microphone, meetingAudio, engines][root.frame.onboarding.step]
    }
}
