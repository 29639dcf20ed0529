import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The draft: what is to be said about it, its points, and their quotes. Arrows go through points and quotes, Enter goes
// to the turn of a quote, Ctrl+Enter plays from there.
ReadingList {
    id: root

    required property AppCommands commands
    required property MeetingPage page
    required property AudioPlayback playback
    property real headerHeight: 0 // that the place is kept for
    readonly property DraftRow current: currentItem as DraftRow

    // What stands above the rows has another height: what is being read stays where it is, and the top the top.
    function keepPlace() {
        const grown = headerItem.height - headerHeight
        headerHeight = headerItem.height
        if (count === 0 || contentY <= originY + Math.max(0, grown))
            contentY = originY - topMargin
        else if (contentY < 0)
            contentY -= grown
    }

    function play(turn) {
        if (turn !== "" && playback.present && playback.enabled)
            playback.playTurn(turn)
    }

    Accessible.name: qsTr("Draft")
    model: page.draft

    Keys.enabled: current !== null
    Keys.onPressed: event => {
        const enter = [Qt.Key_Return, Qt.Key_Enter, Qt.Key_Space].includes(event.key) && current.quote
        event.accepted = stepped(event.key) || enter
        if (enter && event.modifiers & Qt.ControlModifier)
            play(current.turn)
        else if (enter)
            page.showTurn(current.turn)
    }

    // Another draft is read from its beginning.
    Connections {
        function onModelReset() {
            root.currentIndex = 0
            Qt.callLater(root.positionViewAtBeginning)
        }

        target: root.page.draft
    }

    delegate: DraftRow {
        required property int index

        activeFocusOnTab: current || activeFocus
        current: ListView.isCurrentItem
        playable: root.playback.present && root.playback.enabled && turn !== ""
        width: ListView.view.width - 4 * Theme.unit

        onChosen: root.choose(index)
        onPlayAsked: root.play(turn)
        onTurnAsked: {
            root.choose(index)
            root.page.showTurn(turn)
        }
    }
    header: DraftHead {
        commands: root.commands
        page: root.page
        width: ListView.view.width - 4 * Theme.unit

        onHeightChanged: Qt.callLater(root.keepPlace)
    }
}
