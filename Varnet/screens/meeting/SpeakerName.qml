import QtQuick
import Varnet

// Who speaks, in the speaker's hue; a click asks for another name.
ThemedText {
    id: root

    required property string speaker
    required property int hue
    property bool usable: true

    signal chosen

    Accessible.focusable: false
    Accessible.ignored: !usable
    Accessible.name: qsTr("Name %1").arg(speaker)
    Accessible.onPressAction: chosen()
    Accessible.role: Accessible.Button
    color: hue < 0 ? Theme.faint : Theme.speakers[hue]
    text: speaker
    type: Theme.emphasis

    transform: Lift {
        words: root
    }

    Rectangle {
        anchors.bottom: parent.bottom
        color: root.color
        height: 1
        visible: hover.hovered
        width: root.contentWidth
    }

    HoverHandler {
        id: hover

        cursorShape: Qt.PointingHandCursor
        enabled: root.usable
    }

    TapHandler {
        enabled: root.usable
        onTapped: root.chosen()
    }
}
