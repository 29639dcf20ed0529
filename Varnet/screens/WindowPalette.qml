import QtQuick
import Varnet

// The theme for what Qt draws in the window by itself: tooltips, and the file dialog where the desktop has none.
Item {
    readonly property var colours: ({
        alternateBase: Theme.raised,
        base: Theme.surface,
        brightText: Theme.surface,
        button: Theme.raised,
        buttonText: Theme.text,
        dark: Theme.secondary,
        highlight: Theme.selection,
        highlightedText: Theme.text,
        light: Theme.surface,
        link: Theme.accent,
        mid: Theme.line,
        midlight: Theme.raised,
        placeholderText: Theme.faint,
        text: Theme.text,
        toolTipBase: Theme.raised,
        toolTipText: Theme.text,
        window: Theme.surface,
        windowText: Theme.text
    })

    function apply() {
        if (Window.window)
            Object.assign(Window.window.palette, colours)
    }

    Component.onCompleted: apply()
    Window.onWindowChanged: apply()
    onColoursChanged: apply()
}
