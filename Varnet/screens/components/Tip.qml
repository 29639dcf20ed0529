import QtQuick
import QtQuick.Templates as T

// The whole of a text, above it.
Item {
    required property Text words
    property bool shown: false

    T.ToolTip.delay: 600
    T.ToolTip.text: words.text
    T.ToolTip.visible: shown
    anchors.fill: parent
}
