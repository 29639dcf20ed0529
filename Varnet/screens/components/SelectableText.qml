import QtQuick
import Varnet

// Text in one step of the type scale that can be selected and copied from.
TextEdit {
    id: root

    property typeStyle type: Theme.body

    bottomPadding: type.richTextDrop
    color: Theme.text
    font: type.font
    readOnly: true
    selectByMouse: true
    selectedTextColor: Theme.text
    selectionColor: Theme.selection
    textFormat: TextEdit.PlainText
    topPadding: -type.richTextDrop
    wrapMode: TextEdit.Wrap
    onTextChanged: EditorLines.setHeight(textDocument, type.lineHeight)
    onTypeChanged: EditorLines.setHeight(textDocument, type.lineHeight)
}
