import QtQuick
import QtQuick.Layouts
import Varnet

// When a meeting began and how long it was.
ColumnLayout {
    id: root

    required property string time
    required property string duration

    spacing: 0

    ThemedText {
        Accessible.ignored: true
        Layout.alignment: Qt.AlignRight
        text: root.time
    }

    ThemedText {
        Accessible.ignored: true
        Layout.alignment: Qt.AlignRight
        color: Theme.faint
        text: root.duration
        type: Theme.caption
    }
}
