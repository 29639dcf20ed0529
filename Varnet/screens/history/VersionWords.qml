import QtQuick
import QtQuick.Controls.Basic
import Varnet

// A long text to read and to copy from.
Item {
    id: root

    required property string name
    required property string nothing
    required property string text

    Flickable {
        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        ScrollBar.vertical: ThemedScrollBar { policy: ScrollBar.AlwaysOn }
        TextArea.flickable: TextArea {
            Accessible.name: root.name
            activeFocusOnTab: root.text !== ""
            background: null
            color: Theme.text
            font: Theme.body.font
            leftPadding: padding
            padding: 3 * Theme.unit
            readOnly: true
            selectByMouse: true
            selectedTextColor: Theme.text
            selectionColor: Theme.selection
            text: root.text
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            onTextChanged: EditorLines.setHeight(textDocument, Theme.body.lineHeight)
        }
    }

    NothingHere {
        text: root.nothing
        visible: root.text === ""
    }
}
