import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// Something that is on or off: its name, what there is to know about it in `detail`, and the switch at the end of the row.
Switch {
    id: root

    property string detail

    function press() {
        toggle()
        toggled()
    }

    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.description: enabled ? detail : qsTr("Unavailable") + ", " + detail
    Accessible.focusable: activeFocusOnTab
    Accessible.name: text
    Accessible.role: Accessible.CheckBox
    Keys.onEnterPressed: press()
    Keys.onReturnPressed: press()
    bottomPadding: Theme.unit
    focusPolicy: enabled ? Qt.StrongFocus : Qt.NoFocus
    leftPadding: 0
    rightPadding: 0
    spacing: 4 * Theme.unit
    topPadding: Theme.unit

    contentItem: ColumnLayout {
        opacity: root.enabled ? 1 : 0.45
        spacing: 0

        BareText {
            Layout.fillWidth: true
            Layout.rightMargin: root.indicator.width + root.spacing
            text: root.text
            wrapMode: Text.Wrap
        }

        BareText {
            Layout.fillWidth: true
            Layout.rightMargin: root.indicator.width + root.spacing
            color: Theme.secondary
            text: root.detail
            type: Theme.caption
            visible: text !== ""
            wrapMode: Text.Wrap
        }
    }
    indicator: Rectangle {
        border.color: root.checked ? Theme.accent : Theme.faint
        border.width: 1
        color: root.checked ? Theme.accent : Theme.surface
        height: 1.25 * Theme.symbol
        opacity: root.enabled ? 1 : 0.45
        radius: height / 2
        width: 2.25 * Theme.symbol
        x: root.mirrored ? 0 : root.width - width
        y: (root.height - height) / 2

        Rectangle {
            color: root.checked ? Theme.onAccent : Theme.faint
            height: 0.75 * Theme.symbol
            radius: height / 2
            width: height
            x: y + root.visualPosition * (parent.width - width - 2 * y)
            y: Theme.symbol / 4

            Behavior on x {
                enabled: !root.down

                NumberAnimation { duration: Theme.motion }
            }
        }

        FocusRing {
            anchors.fill: parent
            control: root
            radius: height / 2
        }
    }
}
