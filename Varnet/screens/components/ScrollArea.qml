import QtQuick
import QtQuick.Templates as T
import Varnet

// A view of what may be taller than its place. It keeps the control with the focus in view.
Flickable {
    id: root

    property bool telling: false // from the start that there is more, not only while it moves
    readonly property Item focused: Window.activeFocusItem

    function scroll(by) {
        contentY = Math.max(0, Math.min(contentHeight - height, contentY + by))
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    onFocusedChanged: {
        let inside = focused
        while (inside && inside !== contentItem)
            inside = inside.parent
        if (!inside)
            return
        const top = focused.mapToItem(contentItem, 0, 0).y - 6 * Theme.unit
        scroll(Math.min(0, top - contentY) + Math.max(0, top + focused.height + 12 * Theme.unit - contentY - height))
    }

    T.ScrollBar.vertical: ThemedScrollBar {
        policy: root.telling ? T.ScrollBar.AlwaysOn : T.ScrollBar.AsNeeded
    }
}
