import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The words of a turn while they are corrected. Enter or leaving keeps them, Escape leaves them as they were.
Column {
    id: root

    required property MeetingPage page
    required property string turn
    required property string words
    property string began // what stood here at first, or was handed in last
    property string edits // the turn that was opened, whatever the row shows later
    property bool open: true

    // `byKeys`: the keyboard goes back to the turn
    signal closed(bool byKeys)
    signal moved(rect cursor)

    function handIn() {
        const now = page.typed(area.textDocument)
        if (!open || now === began)
            return
        began = now
        page.editTurn(edits, now)
    }

    function close(byKeys) {
        if (!open)
            return
        handIn()
        open = false
        closed(byKeys)
    }

    spacing: Theme.unit

    Component.onCompleted: {
        edits = turn
        area.text = words
        page.beginTyping(area.textDocument)
        began = page.typed(area.textDocument)
        area.cursorPosition = area.length
        area.forceActiveFocus()
    }
    Component.onDestruction: handIn()
    onHeightChanged: Qt.callLater(moved, area.cursorRectangle)

    Connections {
        function onAboutToLeave() {
            root.close(false)
        }

        target: root.page
    }

    TextArea {
        id: area

        Accessible.description: hint.text
        Accessible.name: qsTr("Words of this turn")
        bottomPadding: Math.max(0, Theme.unit - Theme.reading.lineGap / 2) // a gap stands below every line
        color: Theme.text
        font: Theme.reading.font
        leftPadding: 2 * Theme.unit
        rightPadding: 2 * Theme.unit
        selectByMouse: true
        selectedTextColor: Theme.text
        selectionColor: Theme.selection
        textFormat: TextEdit.PlainText
        topPadding: Theme.unit + Theme.reading.lineGap / 2
        width: root.width
        wrapMode: TextEdit.Wrap

        Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        Keys.onEscapePressed: {
            root.open = false
            root.closed(true)
        }
        Keys.onPressed: event => {
            event.accepted = (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && !(event.modifiers & Qt.ShiftModifier)
            if (event.accepted)
                root.close(true)
        }
        Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
        Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
        onActiveFocusChanged: {
            if (activeFocus)
                return
            if (Window.active)
                root.close(false)
            else
                root.handIn() // another window has the keyboard now; the editor waits
        }
        onCursorRectangleChanged: root.moved(cursorRectangle)

        background: Rectangle {
            border.color: Theme.accent
            border.width: 2
            color: Theme.surface
            radius: Theme.controlRadius
        }
    }

    BareText {
        id: hint

        color: Theme.faint
        leftPadding: 2 * Theme.unit
        text: qsTr("Enter keeps the words, Shift+Enter begins a new line, Escape leaves them as they were.")
        type: Theme.caption
        width: root.width
        wrapMode: Text.Wrap
    }
}
