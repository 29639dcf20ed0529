import QtQuick
import QtQuick.Layouts
import Varnet

// Plays the recording: where it is, its shape to go elsewhere in it, and how fast. `contentWidth` is that of the page.
Rectangle {
    id: root

    required property AudioPlayback playback
    required property real contentWidth
    readonly property string note: playback.enabled ? playback.problem : qsTr("Playback waits until the recording has ended.")

    Accessible.name: qsTr("Player")
    Accessible.role: Accessible.ToolBar
    color: Theme.surface
    implicitHeight: column.height + 4 * Theme.unit
    visible: playback.present

    Rectangle {
        color: Theme.line
        height: 1
        width: parent.width
    }

    Column {
        id: column

        anchors.centerIn: parent
        spacing: Theme.unit
        width: root.contentWidth

        RowLayout {
            enabled: root.playback.enabled
            spacing: Theme.unit
            width: parent.width

            IconButton {
                symbol: "rewind"
                text: qsTr("Back 5 seconds")
                onClicked: root.playback.skip(-5)
            }

            IconButton {
                symbol: root.playback.playing ? "pause" : "play"
                text: root.playback.playing ? qsTr("Pause") : qsTr("Play")
                onClicked: root.playback.toggle()
            }

            IconButton {
                symbol: "forward"
                text: qsTr("Forward 5 seconds")
                onClicked: root.playback.skip(5)
            }

            BareText {
                Layout.leftMargin: 2 * Theme.unit
                Layout.preferredWidth: length.implicitWidth + Theme.unit // it grows, and nothing moves
                horizontalAlignment: Text.AlignRight
                text: root.playback.positionText
            }

            PlayerWave {
                Layout.fillWidth: true
                Layout.leftMargin: 2 * Theme.unit
                Layout.rightMargin: 2 * Theme.unit
                playback: root.playback
            }

            ThemedText {
                id: length

                Accessible.name: qsTr("%1 long").arg(text)
                color: Theme.secondary
                text: root.playback.durationText
            }

            PlayerSpeed {
                Layout.leftMargin: 2 * Theme.unit
                playback: root.playback
            }
        }

        ThemedText {
            color: root.playback.enabled ? Theme.rec : Theme.secondary
            text: root.note
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
}
