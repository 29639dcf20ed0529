import QtQuick
import Varnet

// A point of the draft, or below it a quote that carries it and leads to its turn. The first point of a group has the
// group's heading.
Column {
    id: root

    required property string heading
    required property bool quote
    required property string words
    required property string detail
    required property string clock
    required property string turn
    required property string spoken
    property bool current: false
    property bool playable: false // the recording can be played from the quote's turn
    readonly property bool leads: quote && turn !== ""

    signal chosen
    signal turnAsked
    signal playAsked

    Accessible.description: leads ? qsTr("Goes to its turn in the transcript") : ""
    Accessible.focusable: activeFocusOnTab
    Accessible.name: spoken
    Accessible.onPressAction: if (leads) turnAsked()
    Accessible.role: leads ? Accessible.Button : quote ? Accessible.StaticText : Accessible.ListItem
    topPadding: quote ? 0 : 2 * Theme.unit

    ThemedText {
        Accessible.role: Accessible.Heading
        bottomPadding: Theme.unit
        text: root.heading
        topPadding: 2 * Theme.unit
        type: Theme.heading
        visible: text !== ""
        width: root.width
    }

    Item {
        implicitHeight: content.implicitHeight + 2 * Theme.unit
        width: root.width

        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: root.quote ? Theme.unit : -2 * Theme.unit
            anchors.rightMargin: -2 * Theme.unit
            border.color: Theme.accent
            border.width: root.activeFocus ? 2 : 0
            color: root.activeFocus || (hover.hovered && root.leads) ? Theme.raised : "transparent"
            radius: Theme.controlRadius
        }

        Rectangle {
            anchors.left: parent.left
            color: root.leads && hover.hovered ? Theme.accent : Theme.line
            height: content.height
            radius: 1
            visible: root.quote
            width: 2
            y: Theme.unit
        }

        HoverHandler {
            id: hover

            cursorShape: root.leads ? Qt.PointingHandCursor : Qt.ArrowCursor
        }

        TapHandler {
            gesturePolicy: TapHandler.ReleaseWithinBounds
            onTapped: root.leads ? root.turnAsked() : root.chosen()
        }

        Column {
            id: content

            anchors.left: parent.left
            anchors.leftMargin: root.quote ? 3 * Theme.unit : 0
            width: parent.width - anchors.leftMargin - (root.playable ? play.width : 0)
            y: Theme.unit

            BareText {
                color: root.quote ? Theme.secondary : Theme.text
                text: root.words
                type: root.quote ? Theme.body : Theme.reading
                width: parent.width
                wrapMode: Text.Wrap
            }

            BareText {
                color: root.quote ? Theme.faint : Theme.secondary
                text: root.detail
                type: root.quote ? Theme.caption : Theme.emphasis
                visible: text !== ""
                width: parent.width
                wrapMode: Text.Wrap
            }
        }

        IconButton {
            id: play

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            focusPolicy: root.current || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
            padding: Theme.unit
            symbol: "play"
            text: qsTr("Play from %1").arg(root.clock)
            visible: root.playable
            onClicked: root.playAsked()
        }
    }
}
