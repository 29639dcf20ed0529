import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The list of turns with its current one. Arrows move, Enter edits, F2 names the speaker.
ListView {
    id: root

    required property MeetingPage page
    property int editing: -1 // the row whose words are being edited
    readonly property TurnRow currentTurn: currentItem as TurnRow

    signal looked // the keyboard went through the list

    function go(row) {
        currentIndex = Math.max(0, Math.min(count - 1, row))
        positionViewAtIndex(currentIndex, ListView.Contain)
        looked()
    }

    function choose(row) {
        currentIndex = row
        currentItem.forceActiveFocus()
    }

    function edit() {
        editing = currentIndex
    }

    // Where a card about the current turn opens.
    function below() {
        return contentItem.mapFromItem(currentItem, 0, Math.min(currentItem.height, 14 * Theme.unit))
    }

    function name() {
        namePopup.ask(currentTurn.label, currentTurn.speaker, below())
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
    Keys.onDownPressed: go(currentIndex + 1)
    Keys.onEnterPressed: edit()
    Keys.onMenuPressed: menu.popup(currentItem, 0, currentItem.height)
    Keys.onReturnPressed: edit()
    Keys.onUpPressed: go(currentIndex - 1)
    Keys.onPressed: event => {
        const rows = ({ [Qt.Key_PageDown]: 8, [Qt.Key_PageUp]: -8, [Qt.Key_End]: count, [Qt.Key_Home]: -count })
        const menuAsked = event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier
        event.accepted = event.key in rows || event.key === Qt.Key_F2 || menuAsked
        if (event.key in rows)
            go(currentIndex + rows[event.key])
        else if (menuAsked)
            menu.popup(currentItem, 0, currentItem.height)
        else if (event.accepted)
            name()
    }

    delegate: TurnRow {
        id: row

        required property int index

        current: ListView.isCurrentItem
        editor: root.editing >= 0 && root.editing === index ? turnEditor : null // a row that goes has no index
        width: ListView.view.width - 8 * Theme.unit

        onChosen: root.choose(index)
        onEditAsked: {
            root.choose(index)
            root.edit()
        }
        onMenuAsked: at => {
            root.choose(index)
            menu.popup(row, at.x, at.y)
        }
        onNameAsked: {
            root.choose(index)
            root.name()
        }
        onRecognisedAsked: {
            root.choose(index)
            recognisedPopup.show(turn, recognised, root.below())
        }
    }
    footer: TranscriptFoot {
        page: root.page
        width: ListView.view.width - 8 * Theme.unit
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

    TurnMenu {
        id: menu

        edited: root.currentTurn !== null && root.currentTurn.edited
        onEditAsked: root.edit()
        onNameAsked: root.name()
        onSetBackAsked: root.page.setBack(root.currentTurn.turn)
    }

    NamePopup {
        id: namePopup

        page: root.page
    }

    RecognisedPopup {
        id: recognisedPopup

        page: root.page
    }
}
