import QtQuick
import QtQuick.Layouts
import Varnet

// The one button of a place that matters most. `detail` stands at its end, or below the words where these leave no room.
ThemedButton {
    id: root

    property string detail
    property string symbol
    property bool plain: false // looks like a button among others for now
    property color ground: Theme.accent
    property color ink: plain ? Theme.text : Theme.onAccent

    Accessible.name: detail ? text + ", " + detail : text
    bottomPadding: 2 * Theme.unit
    leftPadding: 3 * Theme.unit
    rightPadding: 3 * Theme.unit
    topPadding: 2 * Theme.unit

    background: Rectangle {
        border.color: Theme.line
        border.width: root.plain ? 1 : 0
        color: {
            if (root.plain)
                return root.down || root.hovered ? Theme.raised : Theme.surface
            return root.down ? Qt.darker(root.ground, 1.12) : root.hovered ? Qt.lighter(root.ground, 1.06) : root.ground
        }
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

        GridLayout {
            columnSpacing: Theme.unit
            columns: width < words.implicitWidth + clock.implicitWidth + columnSpacing ? 1 : 2
            rowSpacing: 0

            BareText {
                id: words

                Layout.fillWidth: true
                color: root.ink
                text: root.text
                type: Theme.emphasis
            }

            BareText {
                id: clock

                color: root.ink
                text: root.detail
                type: Theme.caption
                visible: text !== ""
            }
        }
    }
}
