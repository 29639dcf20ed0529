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

    // The window itself is up first: what it takes to be filled, a library of any size may take.
    Loader {
        active: root.frame.shown
        anchors.fill: parent
        focus: true
        Component.onCompleted: setSource("Screens.qml", {"frame": root.frame})
    }
}
