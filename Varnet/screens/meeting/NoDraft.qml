import QtQuick
import Varnet

// What a draft is and how there comes to be one, or why there cannot be one yet.
Column {
    id: root

    required property AppCommands commands
    required property MeetingPage page
    readonly property bool spoken: page.turns.count > 0

    spacing: 2 * Theme.unit

    ThemedText {
        Accessible.role: Accessible.Heading
        text: qsTr("No draft yet")
        type: Theme.heading
        width: parent.width
        wrapMode: Text.Wrap
    }

    Repeater {
        model: root.spoken ? [qsTr("The local notes model drafts a summary, the decisions and the action items on this computer."), qsTr("Every point quotes the transcript, or it is left out.")] : [qsTr("A draft is written from the transcript, and this meeting has none.")]

        ThemedText {
            required property string modelData

            color: Theme.secondary
            text: modelData
            width: root.width
            wrapMode: Text.Wrap
        }
    }

    WriteNotesButton {
        commands: root.commands
        draft: root.page.draft
        visible: root.spoken
    }

    ThemedText {
        color: Theme.faint
        text: root.commands.writeNotesHint
        type: Theme.caption
        visible: root.spoken && !root.commands.writeNotesEnabled && text !== ""
        width: parent.width
        wrapMode: Text.Wrap
    }
}
