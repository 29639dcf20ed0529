pragma Singleton

import QtQuick
import QtQuick.Templates as T

// The whole of a text that is cut off, on hover. Few texts are: one has its handler from the first time on.
QtObject {
    readonly property Component tip: HoverHandler {
        enabled: parent.truncated
        onHoveredChanged: {
            parent.T.ToolTip.delay = 600
            parent.T.ToolTip.text = parent.text
            parent.T.ToolTip.visible = hovered
        }
    }
}
