import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The main window.
ApplicationWindow {
    id: root

    required property MainWindow frame

    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: Qt.locale().textDirection === Qt.RightToLeft
    color: Theme.surface
    font: Theme.body.font
    minimumHeight: 600
    minimumWidth: 900
    palette.alternateBase: Theme.raised
    palette.base: Theme.surface
    palette.brightText: Theme.surface
    palette.button: Theme.raised
    palette.buttonText: Theme.text
    palette.dark: Theme.secondary
    palette.highlight: Theme.selection
    palette.highlightedText: Theme.text
    palette.light: Theme.surface
    palette.link: Theme.accent
    palette.mid: Theme.line
    palette.midlight: Theme.raised
    palette.placeholderText: Theme.faint
    palette.text: Theme.text
    palette.toolTipBase: Theme.raised
    palette.toolTipText: Theme.text
    palette.window: Theme.surface
    palette.windowText: Theme.text
    title: Qt.application.displayName

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
