import QtQuick
import Varnet

// One saved version: when it was kept and what differs from now.
Rectangle {
    id: root

    required property string when
    required property string difference
    required property string spoken
    property bool current: false
    property bool focused: false

    signal chosen

    Accessible.focused: current && focused
    Accessible.name: spoken
    Accessible.onPressAction: chosen()
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: current
    border.color: current && focused ? Theme.accent : Theme.line
    border.width: current && focused || current && Theme.highContrast ? 1 : 0
    color: current ? Theme.selection : hover.hovered ? Theme.raised : "transparent"
    implicitHeight: words.implicitHeight + 4 * Theme.unit
    radius: Theme.controlRadius

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: root.chosen()
    }

    Column {
        id: words

        anchors.left: parent.left
        anchors.margins: 3 * Theme.unit
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter

        BareText {
            text: root.when
            type: Theme.emphasis
            width: parent.width
        }

        BareText {
            color: Theme.secondary
            maximumLineCount: 4
            text: root.difference
            type: Theme.caption
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
}
