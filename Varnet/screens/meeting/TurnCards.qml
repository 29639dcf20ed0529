import QtQuick
import Varnet

// What opens next to the current turn: its menu, the name of its speaker, and the words as they were recognised.
Item {
    id: root

    required property MeetingPage page
    required property TurnRow turn // the current one, or null

    readonly property alias menuOpen: menu.visible

    signal editAsked
    signal playAsked

    function below() {
        return mapFromItem(turn, 0, Math.min(turn.height, 14 * Theme.unit))
    }

    function showMenu(x, y) {
        menu.popup(turn, x, y)
    }

    function name() {
        namePopup.ask(turn.label, turn.speaker, below())
    }

    function showRecognised() {
        recognisedPopup.show(turn.turn, turn.recognised, below())
    }

    TurnMenu {
        id: menu

        edited: root.turn !== null && root.turn.edited
        playable: root.turn !== null && root.turn.playable
        onEditAsked: root.editAsked()
        onNameAsked: root.name()
        onPlayAsked: root.playAsked()
        onSetBackAsked: root.page.setBack(root.turn.turn)
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
