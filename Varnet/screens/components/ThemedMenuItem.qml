import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// One thing to do in a menu, with the keys that do it too. What is not visible takes no room.
MenuItem {
    id: root

    property string keys

    Accessible.description: enabled ? keys : qsTr("Unavailable")
    Accessible.focusable: enabled
    Accessible.name: text
    Accessible.onPressAction: {
        if (action)
            action.trigger(root)
        else if (enabled)
            triggered()
        menu.dismiss()
    }
    bottomPadding: 1.5 * Theme.unit
    height: visible ? implicitHeight : 0
    leftPadding: 3 * Theme.unit
    rightPadding: 3 * Theme.unit
    topPadding: 1.5 * Theme.unit

    background: Rectangle {
        border.color: Theme.accent
        border.width: root.highlighted ? 1 : 0
        color: root.highlighted ? Theme.selection : "transparent"
        radius: Theme.controlRadius
    }
    contentItem: RowLayout {
        opacity: root.enabled ? 1 : 0.45
        spacing: 4 * Theme.unit

        BareText {
            Layout.fillWidth: true
            text: root.text
        }

        BareText {
            color: Theme.faint
            text: root.keys
            type: Theme.caption
            visible: text !== ""
        }
    }
}
