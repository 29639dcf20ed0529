import QtQuick
import QtQuick.Templates as T
import Varnet

// Words to look for, taken as they are typed. Escape and the button at its end empty it.
T.TextField {
    id: root

    signal passedOn // the keyboard goes on to what was found

    function begin() {
        forceActiveFocus(Qt.ShortcutFocusReason)
        selectAll()
    }

    Accessible.searchEdit: true
    bottomPadding: Theme.unit
    color: Theme.text
    font: Theme.body.font
    implicitHeight: Theme.body.lineHeight + 2 * Theme.unit
    leftPadding: 5 * Theme.unit + Theme.symbol
    maximumLength: 200
    placeholderTextColor: Theme.faint
    rightPadding: leftPadding
    selectByMouse: true
    selectedTextColor: Theme.text
    selectionColor: Theme.selection
    topPadding: Theme.unit
    verticalAlignment: TextInput.AlignVCenter

    Keys.onDownPressed: passedOn()
    Keys.onEscapePressed: {
        clear()
        passedOn()
    }
    Keys.onReturnPressed: passedOn()
    Keys.onEnterPressed: passedOn()
    Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape

    BareText {
        anchors.left: parent.left
        anchors.leftMargin: root.leftPadding
        anchors.right: parent.right
        anchors.rightMargin: root.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        color: root.placeholderTextColor
        text: root.placeholderText
        visible: root.length === 0 && root.preeditText === ""
    }

    background: Rectangle {
        border.color: root.activeFocus ? Theme.accent : Theme.line
        border.width: root.activeFocus ? 2 : 1
        color: root.hovered || root.activeFocus ? Theme.surface : Theme.raised
        radius: Theme.controlRadius
    }

    Icon {
        anchors.left: parent.left
        anchors.leftMargin: 3 * Theme.unit
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.secondary
        symbol: "search"
    }

    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: Theme.unit
        anchors.verticalCenter: parent.verticalCenter
        padding: Theme.unit
        symbol: "close"
        text: qsTr("Clear the search")
        visible: root.text !== ""
        onClicked: {
            root.clear()
            root.forceActiveFocus(Qt.OtherFocusReason)
        }
    }
}
