import QtQuick
import Varnet

// One point of the draft with the quotes that carry it; the first of a group has the group's heading.
Column {
    id: root

    required property string heading
    required property string words
    required property string task
    required property string spoken
    required property var quotes

    Accessible.name: spoken
    Accessible.role: Accessible.ListItem
    bottomPadding: 3 * Theme.unit
    spacing: Theme.unit

    ThemedText {
        Accessible.role: Accessible.Heading
        bottomPadding: Theme.unit
        text: root.heading
        topPadding: 3 * Theme.unit
        type: Theme.heading
        visible: text !== ""
        width: root.width
    }

    Rectangle {
        color: root.activeFocus ? Theme.raised : "transparent"
        implicitHeight: point.implicitHeight + 2 * Theme.unit
        radius: Theme.controlRadius
        width: root.width

        Rectangle {
            border.color: Theme.accent
            border.width: 2
            color: "transparent"
            height: parent.height
            radius: Theme.controlRadius
            visible: root.activeFocus
            width: parent.width + 4 * Theme.unit
            x: -2 * Theme.unit
        }

        Column {
            id: point

            width: parent.width
            y: Theme.unit

            ThemedText {
                Accessible.ignored: true
                text: root.words
                type: Theme.reading
                width: parent.width
                wrapMode: Text.Wrap
            }

            ThemedText {
                Accessible.ignored: true
                color: Theme.secondary
                text: root.task
                type: Theme.emphasis
                visible: text !== ""
                width: parent.width
                wrapMode: Text.Wrap
            }
        }
    }

    Repeater {
        model: root.quotes

        Item {
            id: quote

            required property var modelData

            Accessible.name: modelData.spoken
            Accessible.role: Accessible.StaticText
            implicitHeight: words.implicitHeight
            width: root.width

            Rectangle {
                color: Theme.line
                height: parent.height
                radius: 1
                width: 2
            }

            Column {
                id: words

                width: parent.width - x
                x: 3 * Theme.unit

                ThemedText {
                    Accessible.ignored: true
                    color: Theme.secondary
                    text: quote.modelData.words
                    width: parent.width
                    wrapMode: Text.Wrap
                }

                ThemedText {
                    Accessible.ignored: true
                    color: Theme.faint
                    text: quote.modelData.origin
                    type: Theme.caption
                    width: parent.width
                }
            }
        }
    }
}
