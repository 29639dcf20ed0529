import QtQuick
import QtQuick.Templates as T
import Varnet

// A title edited in its row: Enter or leaving it keeps the new words, Escape the old ones.
T.TextField {
    id: root

    signal renamed(string title)
    signal ended

    function begin(title) {
        text = title
        forceActiveFocus()
        selectAll()
    }

    Accessible.name: qsTr("Title")
    bottomPadding: 0
    color: Theme.text
    font: Theme.emphasis.font
    leftPadding: 2 * Theme.unit
    rightPadding: 2 * Theme.unit
    selectByMouse: true
    selectedTextColor: Theme.text
    selectionColor: Theme.selection
    topPadding: 0
    verticalAlignment: TextInput.AlignVCenter

    Keys.onEscapePressed: ended()
    Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
    onEditingFinished: {
        renamed(text)
        ended()
    }

    background: Rectangle {
        border.color: Theme.accent
        border.width: 2
        color: Theme.surface
        radius: Theme.controlRadius
    }
}
