import QtQuick
import QtQuick.Layouts
import Varnet

// A place that the sidebar leads to, with how many things are there.
ThemedButton {
    id: root

    required property string symbol
    property string detail
    property bool current: false

    Accessible.description: current ? qsTr("Shown now") : ""
    Accessible.name: detail ? text + ", " + detail : text
    bottomPadding: 1.5 * Theme.unit
    leftPadding: 3 * Theme.unit
    rightPadding: 3 * Theme.unit
    topPadding: 1.5 * Theme.unit

    background: Rectangle {
        border.color: Theme.line
        border.width: root.current && Theme.highContrast ? 1 : 0
        color: root.current ? Theme.selection : root.hovered ? Theme.raised : "transparent"
        radius: Theme.controlRadius

        FocusRing {
            anchors.fill: parent
            control: root
        }
    }
    contentItem: RowLayout {
        spacing: 2 * Theme.unit

        Icon {
            color: root.current ? Theme.text : Theme.secondary
            symbol: root.symbol
        }

        BareText {
            Layout.fillWidth: true
            text: root.text
            type: root.current ? Theme.emphasis : Theme.body
        }

        BareText {
            Layout.leftMargin: -Theme.unit
            color: Theme.secondary
            text: root.detail
            type: Theme.caption
            visible: text !== ""
        }
    }
}
