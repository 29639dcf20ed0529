import QtQuick
import Varnet

// Text in one step of the type scale. What does not fit is cut off with an ellipsis and shown whole on hover. Screen
// readers are told it, unless it is part of a control that says it already and is `Accessible.ignored` there.
Text {
    id: root

    property typeStyle type: Theme.body
    property Item tip

    Accessible.ignored: text === ""
    Accessible.name: text
    Accessible.role: Accessible.StaticText
    color: Theme.text
    elide: Text.ElideRight
    font: type.font
    lineHeight: type.lineHeight
    lineHeightMode: Text.FixedHeight
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter

    onTruncatedChanged: if (truncated && !tip) tip = Tips.tip.createObject(root)
}
