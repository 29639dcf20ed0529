import QtQuick
import Varnet

// What stands above the points of the draft: its making, where it comes from, and what is to be known about it.
Column {
    id: root

    required property AppCommands commands
    required property MeetingPage page
    readonly property DraftModel draft: page.draft

    bottomPadding: 2 * Theme.unit
    spacing: 2 * Theme.unit

    ThemedText {
        Accessible.role: Accessible.Heading
        text: qsTr("Notes are being written")
        type: Theme.heading
        visible: root.commands.writingNotes
        width: root.width
        wrapMode: Text.Wrap
    }

    ThemedText {
        color: Theme.secondary
        text: root.draft.present ? qsTr("The draft below is kept until the new one is there.") : qsTr("You can go on working. The draft will stand here.")
        visible: root.commands.writingNotes
        width: root.width
        wrapMode: Text.Wrap
    }

    NoDraft {
        commands: root.commands
        page: root.page
        visible: !root.draft.present && !root.commands.writingNotes
        width: root.width
    }

    ThemedText {
        color: Theme.faint
        text: root.draft.origin
        type: Theme.caption
        visible: text !== ""
        width: root.width
        wrapMode: Text.Wrap
    }

    Flow {
        spacing: 3 * Theme.unit
        visible: root.draft.outdatedText !== ""
        width: root.width

        ThemedText {
            color: Theme.amber
            height: Math.max(implicitHeight, again.height)
            text: root.draft.outdatedText
            width: Math.min(implicitWidth, root.width)
            wrapMode: Text.Wrap
        }

        WriteNotesButton {
            id: again

            commands: root.commands
            draft: root.draft
            visible: !root.commands.writingNotes
        }
    }

    RemovedPoints {
        draft: root.draft
        visible: root.draft.removedText !== ""
        width: root.width
    }

    ThemedText {
        text: root.draft.emptyText
        type: Theme.reading
        visible: text !== ""
        width: root.width
        wrapMode: Text.Wrap
    }
}
