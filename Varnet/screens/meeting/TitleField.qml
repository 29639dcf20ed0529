import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The title, edited in place: Enter or leaving it keeps the new words, Escape the old ones.
TextField {
    id: root

    property string began // the title when the editing began
    required property string title
    readonly property bool cut: !activeFocus && contentWidth > width - leftPadding - rightPadding

    signal renamed(string title)

    function settle() {
        text = Qt.binding(() => title)
        cursorPosition = 0
    }

    Accessible.name: qsTr("Title")
    ToolTip.delay: 600
    ToolTip.text: title
    ToolTip.visible: hovered && cut
    bottomPadding: Math.floor(implicitHeight - contentHeight - topPadding) // what does not fit would be scrolled
    color: cut ? "transparent" : Theme.text
    font: Theme.title.font
    implicitHeight: Theme.title.lineHeight + Theme.unit // in every script, whatever room its letters ask for
    horizontalAlignment: TextInput.AlignLeft // in every script: the lines below it begin there too
    leftPadding: 2 * Theme.unit
    rightPadding: 2 * Theme.unit
    selectByMouse: true
    selectedTextColor: Theme.text
    selectionColor: Theme.selection
    text: title
    topPadding: Theme.unit

    Keys.onEscapePressed: {
        text = began
        focus = false
    }
    Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
    onAccepted: focus = false
    onActiveFocusChanged: if (activeFocus) began = text // not the title: the field may show it a little differently
    onEditingFinished: {
        if (text !== began)
            renamed(text)
        settle()
    }
    onWidthChanged: if (!activeFocus) {
        cursorPosition = 0
        ensureVisible(0)
    }
    onTitleChanged: if (!activeFocus) settle()

    background: Rectangle {
        border.color: root.activeFocus ? Theme.accent : Theme.line
        border.width: root.activeFocus ? 2 : root.hovered ? 1 : 0
        color: "transparent"
        radius: Theme.controlRadius
    }

    // A field cannot end in an ellipsis.
    BareText {
        id: beginning

        anchors.left: parent.left
        anchors.leftMargin: root.leftPadding
        anchors.right: parent.right
        anchors.rightMargin: root.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignLeft
        text: root.text
        type: Theme.title
        visible: root.cut

        transform: Lift {
            words: beginning
        }
    }
}
