import QtQuick
import Varnet

// One page of the settings, which scrolls where it has not the room.
ScrollArea {
    id: root

    required property Component page

    contentHeight: loader.height + 12 * Theme.unit
    telling: true
    onPageChanged: contentY = 0

    Loader {
        id: loader

        sourceComponent: root.page
        width: root.width - 12 * Theme.unit
        x: 6 * Theme.unit
        y: 6 * Theme.unit
    }
}
