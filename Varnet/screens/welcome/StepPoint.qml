import QtQuick
import QtQuick.Layouts
import Varnet

// Something to know: a symbol, a few words, and a sentence.
RowLayout {
    id: root

    required property string symbol
    required property string text
    required property string detail

    spacing: 4 * Theme.unit

    Icon {
        Layout.alignment: Qt.AlignTop
        Layout.topMargin: (Theme.emphasis.lineHeight - height) / 2
        color: Theme.accent
        symbol: root.symbol
    }

    ColumnLayout {
        spacing: 0

        ThemedText {
            Layout.fillWidth: true
            text: root.text
            type: Theme.emphasis
            wrapMode: Text.Wrap
        }

        ThemedText {
            Layout.fillWidth: true
            color: Theme.secondary
            text: root.detail
            wrapMode: Text.Wrap
        }
    }
}
