import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The list of turns with its current one. Arrows move, Enter edits, Ctrl+Enter plays, F2 names the speaker.
ReadingList {
    id: root

    required property MeetingPage page
    required property AudioPlayback playback
    property int editing: -1 // the row whose words are being edited
    property int pointed: -1 // the row that was gone to a moment ago
    property int newest: 0 // when it was last shown
    readonly property TurnRow currentTurn: currentItem as TurnRow

    signal played // the user chose what to hear

    function play() {
        if (!currentTurn.playable)
            return
        playback.playTurn(currentTurn.turn)
        played()
    }

    // Goes to a turn and shows for a moment which one it is.
    function point(row) {
        choose(row)
        bring(row)
        pointed = row
        pointing.restart()
    }

    // Shows the newest turn. The keyboard goes along if it was there.
    function showNewest() {
        if (count > 0 && currentIndex === newest && !cards.menuOpen)
            currentIndex = count - 1
        newest = Math.max(0, count - 1)
        showEnd()
    }

    // Keeps a part of the current turn in view.
    function reveal(part) {
        const top = mapFromItem(currentItem, 0, part.y).y
        if (top + part.height > height - 4 * Theme.unit)
            contentY += top + part.height - height + 4 * Theme.unit
        else if (top < 0)
            contentY += top
    }

    Accessible.name: qsTr("Turns")
    cacheBuffer: 100 * Theme.unit
    model: page.turns
    reuseItems: true
    onCountChanged: if (count === 0) newest = 0

    Keys.enabled: editing < 0 && count > 0
    Keys.onPressed: event => {
        const menuAsked = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier)
        const enter = [Qt.Key_Return, Qt.Key_Enter].includes(event.key)
        event.accepted = stepped(event.key) || menuAsked || enter || event.key === Qt.Key_F2
        if (menuAsked)
            cards.showMenu(0, currentItem.height)
        else if (enter && event.modifiers & Qt.ControlModifier)
            play()
        else if (enter)
            editing = currentIndex
        else if (event.key === Qt.Key_F2)
            cards.name()
    }

    delegate: TurnRow {
        required property int index

        activeFocusOnTab: current || activeFocus
        current: ListView.isCurrentItem
        editor: root.editing >= 0 && root.editing === index ? turnEditor : null // a row that goes has no index
        playable: root.playback.present && root.playback.enabled
        playing: root.playback.playingTurn === index
        pointed: root.pointed === index
        width: ListView.view.width - 4 * Theme.unit

        onChosen: root.choose(index)
        onEditAsked: {
            root.choose(index)
            root.editing = index
        }
        onMenuAsked: at => {
            root.choose(index)
            cards.showMenu(at.x, at.y)
        }
        onNameAsked: {
            root.choose(index)
            cards.name()
        }
        onPlayAsked: {
            root.choose(index)
            root.play()
        }
        onRecognisedAsked: {
            root.choose(index)
            cards.showRecognised()
        }
    }
    footer: TranscriptFoot {
        page: root.page
        width: ListView.view.width - 4 * Theme.unit
    }

    Timer {
        id: pointing

        interval: 1600
        onTriggered: root.pointed = -1
    }

    TurnCards {
        id: cards

        page: root.page
        turn: root.currentTurn
        onEditAsked: root.editing = root.currentIndex
        onPlayAsked: root.play()
    }

    Component {
        id: turnEditor

        TurnEditor {
            page: root.page
            turn: root.currentTurn.turn
            words: root.currentTurn.words
            onClosed: byKeys => {
                root.editing = -1
                if (byKeys)
                    root.currentItem.forceActiveFocus()
            }
            onMoved: cursor => root.reveal(cursor)
        }
    }
}
