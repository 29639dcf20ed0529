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

    TurnRow {
        clock: ""
        edited: false
        hit: false
        hue: -1
        label: ""
        marked: ""
        recognised: ""
        speaker: ""
        spoken: words
        tentative: true
        turn: ""
        visible: words !== ""
        width: root.width
        words: root.page.partialText
    }
}
