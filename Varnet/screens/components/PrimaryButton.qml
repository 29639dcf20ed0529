import QtQuick
import QtQuick.Layouts
import Varnet

// The one button of a place that matters most. `detail` stands at its right end.
ThemedButton {
    id: root

    property string detail
    property string symbol
    property color ground: Theme.accent
    property color ink: Theme.onAccent

    Accessible.name: detail ? text + ", " + detail : text
    bottomPadding: 2 * Theme.unit
    leftPadding: 3 * Theme.unit
    rightPadding: 3 * Theme.unit
    topPadding: 2 * Theme.unit

    background: Rectangle {
        color: root.down ? Qt.darker(root.ground, 1.12) : root.hovered ? Qt.lighter(root.ground, 1.06) : root.ground
        opacity: root.enabled ? 1 : 0.45
        radius: Theme.controlRadius

        Behavior on color {
            ColorAnimation { duration: Theme.motion }
        }

        FocusRing {
            control: root
            anchors.fill: parent
        }
    }
    contentItem: RowLayout {
        spacing: 2 * Theme.unit

        Icon {
            color: root.ink
            symbol: root.symbol
            visible: root.symbol !== ""
        }

        ThemedText {
            Accessible.ignored: true
            Layout.fillWidth: true
            color: root.ink
            text: root.text
            type: Theme.emphasis
        }

        ThemedText {
            Accessible.ignored: true
            color: root.ink
            text: root.detail
            type: Theme.emphasis
            visible: text !== ""
        }
    }
}
