import QtQuick
import QtQuick.Controls.Basic
import Varnet

// One page of the settings. It scrolls where it has not the room, and keeps the control with the focus in view.
Flickable {
    id: root

    required property Component page
    readonly property Item focused: Window.activeFocusItem

    function scroll(by) {
        contentY = Math.max(0, Math.min(contentHeight - height, contentY + by))
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: loader.height + 12 * Theme.unit
    onFocusedChanged: {
        let inside = focused
        while (inside && inside !== loader)
            inside = inside.parent
        if (!inside)
            return
        const top = focused.mapToItem(contentItem, 0, 0).y - 6 * Theme.unit
        scroll(Math.min(0, top - contentY) + Math.max(0, top + focused.height + 12 * Theme.unit - contentY - height))
    }
    onPageChanged: contentY = 0

    ScrollBar.vertical: ThemedScrollBar {}

    Loader {
        id: loader

        sourceComponent: root.page
        width: root.width - 12 * Theme.unit
        x: 6 * Theme.unit
        y: 6 * Theme.unit
    }
}
