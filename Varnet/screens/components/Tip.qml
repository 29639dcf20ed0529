import QtQuick
import QtQuick.Templates as T

// The whole of the text that it lies in, once that is under the pointer for a moment.
Item {
    property bool shown: false

    T.ToolTip.delay: 600
    T.ToolTip.text: parent.text
    T.ToolTip.visible: shown
    anchors.fill: parent
}
