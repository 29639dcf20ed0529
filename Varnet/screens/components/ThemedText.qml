import QtQuick
import Varnet

// Text in one step of the type scale. A single line that does not fit is cut off with an ellipsis.
Text {
    id: root

    property var type: Theme.body

    color: Theme.text
    elide: Text.ElideRight
    font: type.font
    lineHeight: type.lineHeight
    lineHeightMode: Text.FixedHeight
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
}
