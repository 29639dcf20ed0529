import QtQuick
import Varnet

// One turn: who and when beside the words. `tentative` words are not final yet, and nothing can be done with them.
Item {
    id: root

    required property string turn
    required property string label
    required property string speaker
    required property int hue
    required property string clock
    required property string words
    required property string spoken
    required property bool edited
    required property string recognised
    required property string marked
    required property bool hit
    property bool tentative: false
    property bool current: false
    property bool playable: false // the recording can be played from here
    property bool playing: false
    property bool pointed: false // it was gone to a moment ago
    property bool pooled: false // kept for another use; screen readers would find it otherwise
    readonly property bool narrow: width < 24 * Theme.body.lineHeight // the words stand below their speaker
    property Component editor: null // stands in place of the words while they are edited

    signal chosen
    signal editAsked
    signal nameAsked
    signal playAsked
    signal recognisedAsked
    signal menuAsked(point at)

    Accessible.description: (playing ? qsTr("Being played.") + " " : "") + (edited ? qsTr("Edited. Recognised as: %1").arg(recognised) : "")
    Accessible.name: spoken
    Accessible.role: Accessible.ListItem
    Accessible.selected: current
    ListView.onPooled: pooled = true
    ListView.onReused: pooled = false
    implicitHeight: Math.max(who.y + who.height, editing.active ? editing.y + editing.height : text.y + text.height) + 2 * Theme.unit
    visible: !pooled

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: -2 * Theme.unit
        anchors.rightMargin: -2 * Theme.unit
        border.color: root.activeFocus ? Theme.accent : Theme.line
        border.width: root.activeFocus || root.playing && Theme.highContrast ? 2 : 0
        color: root.playing ? Theme.selection : hover.hovered || root.activeFocus ? Theme.raised : "transparent"
        radius: Theme.controlRadius
        visible: !root.tentative && !editing.active
    }

    Loader {
        active: root.pointed
        anchors.fill: parent
        anchors.leftMargin: -2 * Theme.unit
        anchors.rightMargin: -2 * Theme.unit
        sourceComponent: TurnFlash {}
    }

    PlayingMark {
        visible: root.playing
    }

    HoverHandler {
        id: hover

        enabled: !root.tentative
    }

    TapHandler {
        enabled: !root.tentative && !editing.active
        onDoubleTapped: root.editAsked()
        onTapped: root.chosen()
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        enabled: !root.tentative && !editing.active
        onTapped: eventPoint => root.menuAsked(eventPoint.position)
    }

    Column {
        id: who

        anchors.left: parent.left
        width: root.narrow ? root.width : Math.max(6 * Theme.body.lineHeight, Math.min(8 * Theme.body.lineHeight, Math.round(root.width / 5)))
        y: 2 * Theme.unit

        SpeakerName {
            anchors.left: parent.left
            hue: root.hue
            speaker: root.speaker
            usable: !root.tentative
            visible: !root.tentative || root.hue >= 0 // who speaks is told apart with the end of an utterance
            width: Math.min(implicitWidth, parent.width)
            onChosen: root.nameAsked()
        }

        Row {
            anchors.left: parent.left
            spacing: 2 * Theme.unit

            TurnClock {
                clock: root.clock
                playable: root.playable
                onPlayAsked: root.playAsked()
            }

            Loader {
                active: root.edited
                sourceComponent: EditedMark {
                    focusPolicy: root.current || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
                    recognised: root.recognised
                    onClicked: root.recognisedAsked()
                }
            }
        }
    }

    TurnWords {
        id: text

        anchors.left: root.narrow ? parent.left : who.right
        anchors.leftMargin: root.narrow ? 0 : 4 * Theme.unit
        anchors.right: parent.right
        hit: root.hit
        ink: root.tentative ? Theme.faint : Theme.text
        marked: root.marked
        visible: !editing.active
        words: root.words
        y: root.narrow ? who.y + who.height + Theme.unit : 1.5 * Theme.unit
    }

    Loader {
        id: editing

        active: root.editor !== null
        anchors.left: text.left
        anchors.leftMargin: -2 * Theme.unit
        anchors.right: parent.right
        anchors.rightMargin: -2 * Theme.unit
        sourceComponent: root.editor
        y: text.y - Theme.unit
    }
}
