import QtQuick
import Varnet

// One turn: who and when beside the words. `tentative` words are not final yet.
Item {
    id: root

    required property string speaker
    required property int hue
    required property string clock
    required property string words
    required property string spoken
    property bool tentative: false

    Accessible.name: spoken
    Accessible.role: Accessible.ListItem
    implicitHeight: Math.max(who.implicitHeight, text.implicitHeight) + 4 * Theme.unit

    Column {
        id: who

        width: 6 * Theme.body.lineHeight
        y: 2 * Theme.unit

        ThemedText {
            Accessible.ignored: true
            color: root.hue < 0 ? Theme.faint : Theme.speakers[root.hue]
            text: root.speaker
            type: Theme.emphasis
            visible: !root.tentative || root.hue >= 0 // who speaks is told apart with the end of an utterance
            width: parent.width
        }

        ThemedText {
            Accessible.ignored: true
            color: Theme.faint
            text: root.clock
            type: Theme.caption
        }
    }

    ThemedText {
        id: text

        Accessible.ignored: true
        anchors.left: who.right
        anchors.leftMargin: 4 * Theme.unit
        anchors.right: parent.right
        color: root.tentative ? Theme.faint : Theme.text
        text: root.words
        type: Theme.reading
        wrapMode: Text.Wrap
        y: 1.5 * Theme.unit
    }
}
