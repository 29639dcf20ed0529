pragma Singleton

import QtQuick
import QtQuick.Templates as T

// The whole of a text that is cut off, on hover. Few texts are: one gets this from the first time on.
QtObject {
    readonly property Component tip: Item {
        id: root

        anchors.fill: parent

        HoverHandler {
            enabled: root.parent.truncated
            onHoveredChanged: {
                root.parent.T.ToolTip.delay = 600
                root.parent.T.ToolTip.text = Qt.binding(() => root.parent.text)
                root.parent.T.ToolTip.visible = hovered
            }
        }
    }
}
