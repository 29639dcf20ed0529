import QtQuick
import Varnet

// When a turn begins. Where there is audio a click plays from there.
Item {
    id: root

    required property string clock
    property bool playable: false

    signal playAsked

    Accessible.focusable: false
    Accessible.ignored: !playable
    Accessible.name: qsTr("Play from %1").arg(clock)
    Accessible.onPressAction: playAsked()
    Accessible.role: Accessible.Button
    implicitHeight: words.implicitHeight
    implicitWidth: words.implicitWidth + (playable ? mark.width + Theme.unit : 0)

    BareText {
        id: words

        anchors.left: parent.left
        color: hover.hovered ? Theme.accent : Theme.faint
        text: root.clock
        type: Theme.caption
    }

    Icon {
        id: mark

        anchors.left: words.right
        anchors.leftMargin: Theme.unit
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.accent
        sourceSize: Qt.size(0.75 * Theme.symbol, 0.75 * Theme.symbol)
        symbol: root.playable ? "play" : ""
        visible: hover.hovered
    }

    HoverHandler {
        id: hover

        cursorShape: Qt.PointingHandCursor
        enabled: root.playable
    }

    TapHandler {
        enabled: root.playable
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: root.playAsked()
    }
}
