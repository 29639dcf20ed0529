import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The user's own notes: plain text that is stored while it is typed.
FocusScope {
    id: root

    required property MeetingPage page

    Rectangle {
        anchors.fill: parent
        border.color: area.activeFocus ? Theme.accent : Theme.line
        border.width: area.activeFocus ? 2 : 1
        color: Theme.surface
        radius: Theme.cardRadius
    }

    Flickable {
        anchors.fill: parent
        anchors.margins: 2
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        ScrollBar.vertical: ThemedScrollBar {}
        TextArea.flickable: TextArea {
            id: area

            property bool arriving: false

            function show() {
                arriving = true
                text = root.page.notes
                root.page.beginTyping(textDocument)
                arriving = false
            }

            Accessible.name: qsTr("Your notes")
            background: null
            color: Theme.text
            focus: true
            font: Theme.reading.font
            padding: 3 * Theme.unit
            placeholderText: qsTr("Your own notes. They are saved as you type.")
            placeholderTextColor: Theme.faint
            selectByMouse: true
            selectedTextColor: Theme.text
            selectionColor: Theme.selection
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap

            Component.onCompleted: show()
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
            Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
            onTextChanged: if (!arriving) root.page.typeNotes(root.page.typed(textDocument))

            Connections {
                function onNotesReplaced() {
                    area.show()
                }

                target: root.page
            }
        }
    }
}
