import QtQuick
import Varnet

// The state of a meeting in a word or two.
Item {
    id: root

    property alias text: words.text
    property bool marked: false
    property int tone: 3

    implicitHeight: text === "" ? 0 : words.height
    implicitWidth: words.anchors.leftMargin + words.width

    StatusDot {
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        tone: root.tone
        visible: root.marked
    }

    BareText {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: root.marked ? Theme.symbol / 2 + 1.5 * Theme.unit : 0
        color: Theme.tones[root.tone]
        type: Theme.caption
    }
}
