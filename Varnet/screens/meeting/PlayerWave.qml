import QtQuick
import Varnet

// The shape of the recording. A press or a drag goes to that place, Left and Right a step.
WaveformItem {
    id: root

    required property AudioPlayback playback

    Accessible.description: qsTr("%1 of %2").arg(playback.positionText).arg(playback.durationText)
    Accessible.focusable: true
    Accessible.name: qsTr("Position")
    Accessible.onDecreaseAction: playback.skip(-stepSize)
    Accessible.onIncreaseAction: playback.skip(stepSize)
    Accessible.role: Accessible.Slider
    activeFocusOnTab: true
    color: Theme.faint
    duration: playback.duration
    implicitHeight: 9 * Theme.unit
    opacity: enabled ? 1 : 0.45
    peaks: playback.peaks
    playedColor: Theme.accent
    position: playback.position

    onSought: seconds => playback.seek(seconds)

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: -Theme.unit
        border.color: Theme.accent
        border.width: 2
        color: "transparent"
        radius: Theme.controlRadius
        visible: root.activeFocus
    }
}
