import QtQuick
import Varnet

// Words on their way: not stored, and still changing.
Column {
    id: root

    required property MeetingPage page

    Repeater {
        model: root.page.partialTurns

        TurnRow {
            tentative: true
            width: root.width
        }
    }

    ThemedText {
        color: Theme.faint
        leftPadding: 6 * Theme.body.lineHeight + 4 * Theme.unit
        text: root.page.partialText
        type: Theme.reading
        visible: text !== ""
        width: root.width
        wrapMode: Text.Wrap
    }
}
