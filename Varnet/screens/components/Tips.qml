pragma Singleton

import QtQuick

// The whole of a text that is cut off, on hover. Few texts are: one gets this from the first time on.
QtObject {
    readonly property Component tip: Item {
        id: root

        property QtObject bubble

        anchors.fill: parent

        HoverHandler {
            enabled: root.parent.cut
            onHoveredChanged: {
                root.bubble = root.bubble ?? Qt.createComponent("Tip.qml").createObject(root, {"words": root.parent})
                root.bubble.shown = hovered
            }
        }
    }
}
