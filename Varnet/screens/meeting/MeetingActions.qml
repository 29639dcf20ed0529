import QtQuick
import QtQuick.Controls.Basic
import Varnet

// What can be done with the whole meeting. Where there is no room for the words they go into a menu.
Row {
    id: root

    required property AppCommands commands
    required property AppRouter router
    required property MeetingPage page
    required property real room

    spacing: 2 * Theme.unit

    Action {
        id: writing

        enabled: root.visible && root.commands.writeNotesEnabled
        shortcut: ShortcutKeys.writeNotes
        text: root.page.draft.writeTitle
        onTriggered: root.commands.writeNotes()
    }

    Action {
        id: exporting

        enabled: root.visible && root.page.present
        shortcut: ShortcutKeys.exportMeeting
        text: qsTr("Export…")
        onTriggered: root.router.exporting = true
    }

    Action {
        id: history

        enabled: root.page.present
        text: qsTr("Version history")
        onTriggered: root.commands.openHistory()
    }

    Action {
        id: transcribing

        enabled: root.commands.transcribeAgainEnabled
        text: root.commands.transcribeTitle
        onTriggered: root.commands.askToTranscribeAgain()
    }

    Action {
        id: deleting

        enabled: root.commands.deleteEnabled
        text: qsTr("Delete")
        onTriggered: root.commands.deleteSelected()
    }

    Row {
        id: words

        spacing: 2 * Theme.unit
        visible: root.room >= implicitWidth

        WriteNotesButton {
            commands: root.commands
            draft: root.page.draft
        }

        Repeater {
            model: [exporting, history, transcribing, deleting]

            PlainButton {
                required property Action modelData

                action: modelData
            }
        }
    }

    IconButton {
        symbol: "more"
        text: qsTr("More actions")
        visible: !words.visible
        onClicked: menu.popup(this, 0, height)

        ThemedMenu {
            id: menu

            title: qsTr("More actions")

            ThemedMenuItem {
                action: writing
                keys: ShortcutKeys.writeNotes
            }
            ThemedMenuItem {
                action: exporting
                keys: ShortcutKeys.exportMeeting
            }
            ThemedMenuItem {
                action: history
                keys: ShortcutKeys.history
            }
            ThemedMenuItem {
                action: transcribing
            }
            ThemedMenuItem {
                action: deleting
            }
        }
    }
}
