import QtQuick
import QtQuick.Controls.Basic
import Varnet

// Says that a turn was corrected. The recognised words are shown on hover and on focus.
ThemedButton {
    id: root

    required property string recognised
    property bool shown: false // elsewhere, by a click

    Accessible.description: qsTr("Recognised as: %1").arg(recognised)
    Accessible.name: text
    hoverEnabled: true
    padding: 0
    text: qsTr("Edited")

    onClicked: shown = true
    onHoveredChanged: shown = false

    background: FocusRing {
        control: root
    }
    contentItem: BareText {
        color: root.hovered || root.visualFocus ? Theme.text : Theme.faint
        text: root.text
        type: Theme.caption
    }

    Loader {
        active: (root.hovered || root.visualFocus) && !root.shown
        sourceComponent: ToolTip {
            delay: Theme.motion
            parent: root
            text: root.Accessible.description
            visible: true
            width: Math.min(implicitWidth, 20 * Theme.body.lineHeight)
            x: 0
            y: root.height + Theme.unit
        }
    }
}
