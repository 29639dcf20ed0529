import QtQuick
import Varnet

// The state of a meeting in a word or two.
Row {
    property alias text: words.text
    property bool marked: false
    property int tone: 3

    Accessible.name: text
    Accessible.role: Accessible.StaticText
    spacing: 1.5 * Theme.unit

    StatusDot {
        anchors.verticalCenter: parent.verticalCenter
        tone: parent.tone
        visible: parent.marked
    }

    ThemedText {
        id: words

        Accessible.ignored: true
        color: Theme.tones[parent.tone]
        type: Theme.caption
    }
}
