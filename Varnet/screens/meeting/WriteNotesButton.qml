import QtQuick
import QtQuick.Controls.Basic
import Varnet

// Has the draft written, for the first time or anew. On hover it says what that means, or why it cannot be done now.
Item {
    id: root

    required property AppCommands commands
    required property DraftModel draft

    ToolTip.delay: 600
    ToolTip.text: commands.writeNotesHint
    ToolTip.visible: hover.hovered && commands.writeNotesHint !== ""
    implicitHeight: button.implicitHeight
    implicitWidth: button.implicitWidth

    // A button that cannot be pressed knows nothing of the pointer.
    HoverHandler {
        id: hover
    }

    PlainButton {
        id: button

        Accessible.description: root.commands.writeNotesHint
        anchors.fill: parent
        enabled: root.commands.writeNotesEnabled
        text: root.draft.writeTitle
        onClicked: root.commands.writeNotes()
    }
}
