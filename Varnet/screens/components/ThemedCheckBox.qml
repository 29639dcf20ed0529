import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// A choice that is made or not, with what there is to know about it in `detail`.
CheckBox {
    id: root

    property string detail

    function press() {
        toggle()
        toggled()
    }

    Accessible.checkable: true
    Accessible.description: enabled ? detail : qsTr("Unavailable") + ", " + detail
    Accessible.focusable: activeFocusOnTab
    Keys.onEnterPressed: press()
    Keys.onReturnPressed: press()
    bottomPadding: Theme.unit
    focusPolicy: enabled ? Qt.StrongFocus : Qt.NoFocus
    leftPadding: 0
    spacing: 2 * Theme.unit
    topPadding: Theme.unit

    contentItem: RowLayout {
        spacing: 3 * Theme.unit

        BareText {
            Layout.leftMargin: root.indicator.width + root.spacing
            Layout.preferredWidth: 6 * Theme.body.lineHeight
            color: root.enabled ? Theme.text : Theme.faint
            text: root.text
        }

        BareText {
            Layout.fillWidth: true
            Layout.preferredWidth: 0
            color: root.enabled ? Theme.secondary : Theme.faint
            text: root.detail
            visible: root.width >= 16 * Theme.body.lineHeight
            wrapMode: Text.Wrap
        }
    }
    indicator: Rectangle {
        border.color: root.checked ? Theme.accent : Theme.faint
        border.width: 1
        color: root.checked ? Theme.accent : "transparent"
        height: width
        opacity: root.enabled ? 1 : 0.45
        radius: Theme.unit
        width: Theme.symbol
        x: root.mirrored ? root.width - width : 0
        y: (root.height - height) / 2

        Icon {
            anchors.centerIn: parent
            color: Theme.onAccent
            sourceSize: Qt.size(0.75 * Theme.symbol, 0.75 * Theme.symbol)
            symbol: "check"
            visible: root.checked
        }

        FocusRing {
            control: root
            anchors.fill: parent
        }
    }
}
