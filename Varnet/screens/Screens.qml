import QtQuick
import Varnet

// Everything in the window.
FocusScope {
    id: root

    required property MainWindow frame

    anchors.fill: parent
    focus: true

    // Of the whole window: dialogs and menus lie beside this.
    Component.onCompleted: {
        parent.LayoutMirroring.childrenInherit = true
        parent.LayoutMirroring.enabled = frame.rightToLeft
    }

    Loader {
        active: root.frame.shown
        Component.onCompleted: setSource("Shortcuts.qml", {"frame": root.frame})
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
