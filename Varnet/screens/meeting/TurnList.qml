import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The list of turns with its current one. Arrows move, Enter edits, Ctrl+Enter plays, F2 names the speaker.
ListView {
    id: root

    required property MeetingPage page
    required property AudioPlayback playback
    property int editing: -1 // the row whose words are being edited
    readonly property TurnRow currentTurn: currentItem as TurnRow

    signal looked // the keyboard went through the list
    signal played // the user chose what to hear

    function go(row) {
        currentIndex = Math.max(0, Math.min(count - 1, row))
        positionViewAtIndex(currentIndex, ListView.Contain)
        looked()
    }

    function choose(row) {
        currentIndex = row
        currentItem.forceActiveFocus()
    }

    function play() {
        if (!currentTurn.playable)
            return
        playback.playTurn(currentTurn.turn)
        played()
    }

    // Brings a row that is not well in view near the top, so that the next ones are there to be read.
    function bring(row) {
        const item = itemAtIndex(row)
        if (item !== null && item.y >= contentY && item.y + item.height <= contentY + height - 14 * Theme.unit)
            return
        positionViewAtIndex(row, ListView.Beginning)
        contentY = Math.max(originY - topMargin, contentY - height / 6)
        positionViewAtIndex(row, ListView.Contain)
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
    Accessible.role: Accessible.List
    activeFocusOnTab: true
    bottomMargin: 8 * Theme.unit
    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: 100 * Theme.unit
    clip: true
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    leftMargin: 2 * Theme.unit
    model: page.turns
    reuseItems: true
    topMargin: 2 * Theme.unit

    Keys.enabled: editing < 0 && count > 0
    Keys.onPressed: event => {
        const steps = ({ [Qt.Key_Down]: 1, [Qt.Key_Up]: -1, [Qt.Key_PageDown]: 8, [Qt.Key_PageUp]: -8, [Qt.Key_End]: count, [Qt.Key_Home]: -count })
        const menuAsked = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier)
        const enter = [Qt.Key_Return, Qt.Key_Enter].includes(event.key)
        event.accepted = event.key in steps || menuAsked || enter || event.key === Qt.Key_F2
        if (event.key in steps)
            go(currentIndex + steps[event.key])
        else if (menuAsked)
            cards.showMenu(0, currentItem.height)
        else if (enter && event.modifiers & Qt.ControlModifier)
            play()
        else if (enter)
            editing = currentIndex
        else if (event.accepted)
            cards.name()
    }

    delegate: TurnRow {
        required property int index

        current: ListView.isCurrentItem
        editor: root.editing >= 0 && root.editing === index ? turnEditor : null // a row that goes has no index
        playable: root.playback.present && root.playback.enabled
        playing: root.playback.playingTurn === index
        width: ListView.view.width - 8 * Theme.unit

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
        width: ListView.view.width - 8 * Theme.unit
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
