import QtQuick
import Varnet

// Text in one step of the type scale, part of a control that tells screen readers itself. What does not fit is cut off
// with an ellipsis and shown whole on hover.
Text {
    id: root

    property typeStyle type: Theme.body
    property Item tip
    readonly property bool cut: truncated && width > 0 // without a width it is not placed yet

    color: Theme.text
    elide: Text.ElideRight
    font: type.font
    lineHeight: type.lineHeight
    lineHeightMode: Text.FixedHeight
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter

    onCutChanged: if (cut && !tip) tip = Tips.tip.createObject(root)
}
