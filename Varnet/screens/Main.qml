import QtQuick
import QtQuick.Templates as T
import Varnet

// The main window.
T.ApplicationWindow {
    id: root

    required property MainWindow frame

    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: frame.rightToLeft
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

    Screens {
        anchors.fill: parent
        focus: true
        frame: root.frame
    }
}
