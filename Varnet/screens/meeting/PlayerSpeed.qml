import QtQuick
import QtQuick.Controls.Basic
import Varnet

// How fast the recording plays, out of a menu.
PlainButton {
    id: root

    required property AudioPlayback playback

    Accessible.name: qsTr("Speed, %1").arg(text)
    ToolTip.delay: 600
    ToolTip.text: qsTr("Speed")
    ToolTip.visible: hovered && !menu.visible
    implicitWidth: 2.75 * Theme.body.lineHeight
    text: qsTr("%1×").arg(playback.rate)
    onClicked: menu.open()

    ThemedMenu {
        id: menu

        width: 6 * Theme.body.lineHeight
        x: root.width - width
        y: -height - Theme.unit

        Repeater {
            model: [0.75, 1, 1.25, 1.5, 2]

            ThemedMenuItem {
                required property real modelData

                Accessible.checkable: true
                Accessible.checked: root.playback.rate === modelData
                keys: root.playback.rate === modelData ? "✓" : ""
                text: qsTr("%1×").arg(modelData)
                onTriggered: root.playback.setRate(modelData)
            }
        }
    }
}
