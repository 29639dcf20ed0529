import QtQuick
import QtQuick.Controls.Basic
import Varnet

// One of several views of a thing, marked below while it is shown.
TabButton {
    id: root

    Accessible.name: text
    Accessible.onPressAction: TabBar.tabBar.setCurrentIndex(TabBar.index)
    Accessible.selectable: true
    Accessible.selected: checked
    bottomPadding: 2.5 * Theme.unit
    leftPadding: 3 * Theme.unit
    rightPadding: 3 * Theme.unit
    topPadding: 1.5 * Theme.unit
    width: implicitWidth
    // The bar's own list moves the focus without saying that it was by a key.
    onActiveFocusChanged: if (activeFocus && focusReason === Qt.OtherFocusReason) focusReason = Qt.TabFocusReason

    background: Rectangle {
        color: root.hovered && !root.checked ? Theme.raised : "transparent"
        radius: Theme.controlRadius

        Rectangle {
            anchors.bottom: parent.bottom
            color: Theme.accent
            height: 2
            visible: root.checked && !root.visualFocus
            width: parent.width
        }

        FocusRing {
            control: root
            anchors.fill: parent
            anchors.margins: 0
            radius: Theme.controlRadius
        }
    }
    contentItem: BareText {
        color: root.checked ? Theme.text : Theme.secondary
        horizontalAlignment: Text.AlignHCenter
        text: root.text
        type: root.checked ? Theme.emphasis : Theme.body
    }
}
