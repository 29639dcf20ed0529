import QtQuick
import Varnet

// Everything in the window.
Item {
    id: root

    required property MainWindow frame

    Shortcuts {
        commands: root.frame.commands
        delegate: root.frame.delegate
        pagesShown: !root.frame.onboarding.showing
        router: root.frame.router
    }

    // Made once, when it is first shown, and kept.
    Loader {
        active: false
        anchors.fill: parent
        focus: visible
        visible: !root.frame.onboarding.showing
        sourceComponent: ContentView {
            frame: root.frame
        }

        Binding on active {
            restoreMode: Binding.RestoreNone
            value: true
            when: !root.frame.onboarding.showing
        }
    }

    Loader {
        active: root.frame.onboarding.showing
        anchors.fill: parent
        focus: active
        Component.onCompleted: setSource("welcome/OnboardingView.qml", {"frame": root.frame})
    }

    Later {
        anchors.fill: parent
        frame: root.frame
        part: Qt.resolvedUrl("Overlays.qml")
        properties: ({ "frame": root.frame })
    }
}
