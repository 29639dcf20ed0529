import QtQuick
import QtQuick.Controls.Basic
import Varnet

// How fast the recording plays, out of a menu.
PlainButton {
    id: root

    required property AudioPlayback playback

    component Speed: ThemedMenuItem {
        required property real rate

        Accessible.checkable: true
        Accessible.checked: root.playback.rate === rate
        keys: root.playback.rate === rate ? "✓" : ""
        text: qsTr("%1×").arg(rate)
        onTriggered: root.playback.setRate(rate)
    }

    Accessible.name: qsTr("Speed, %1").arg(text)
    ToolTip.delay: 600
    ToolTip.text: qsTr("Speed")
    ToolTip.visible: hovered && !menu.visible
    implicitWidth: 2.75 * Theme.body.lineHeight
    text: qsTr("%1×").arg(playback.rate)
    onClicked: menu.open()

    ThemedMenu {
        id: menu

        title: qsTr("Speed")
        width: 6 * Theme.body.lineHeight
        x: root.width - width
        y: -height - Theme.unit

        Speed { rate: 0.75 }
        Speed { rate: 1 }
        Speed { rate: 1.25 }
        Speed { rate: 1.5 }
        Speed { rate: 2 }
    }
}
