import QtQuick
import QtQuick.Layouts
import Varnet

// A round button that floats over the content.
ThemedButton {
    id: root

    required property string symbol

    bottomPadding: 1.5 * Theme.unit
    leftPadding: 3 * Theme.unit
    rightPadding: 4 * Theme.unit
    topPadding: 1.5 * Theme.unit

    background: Rectangle {
        color: root.down ? Qt.darker(Theme.accent, 1.12) : Theme.accent
        radius: height / 2

        FocusRing {
            anchors.fill: parent
            control: root
            radius: height / 2
        }
    }
    contentItem: RowLayout {
        spacing: 1.5 * Theme.unit

        Icon {
            color: Theme.onAccent
            symbol: root.symbol
        }

        BareText {
            color: Theme.onAccent
            text: root.text
            type: Theme.emphasis
        }
    }
}
