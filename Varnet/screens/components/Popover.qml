import QtQuick
import QtQuick.Controls.Basic
import Varnet

// A small card over the content, next to what it is about. Its `title` is for screen readers.
Dialog {
    focus: true
    margins: 4 * Theme.unit
    padding: 4 * Theme.unit
    header: Item {}

    background: Rectangle {
        border.color: Theme.line
        border.width: 1
        color: Theme.raised
        radius: Theme.cardRadius
    }
}
