import QtQuick
import Varnet

// The deleted meetings. Enter restores the selected ones, Delete erases them after a question.
FocusScope {
    id: root

    required property AppCommands commands
    required property DeletedModel deleted

    function restore() {
        commands.restoreDeleted(deleted.selectedIDs)
    }

    DeletedHead {
        id: head

        anchors.left: list.left
        anchors.leftMargin: 4 * Theme.unit
        anchors.right: list.right
        anchors.rightMargin: 4 * Theme.unit
        anchors.top: parent.top
        anchors.topMargin: 7 * Theme.unit
        deleted: root.deleted
        onRestored: root.restore()
    }

    ThemedText {
        anchors.horizontalCenter: parent.horizontalCenter
        color: Theme.secondary
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("No deleted meetings")
        type: Theme.heading
        visible: root.deleted.empty
        width: Math.min(26 * Theme.body.lineHeight, root.width - 16 * Theme.unit)
        y: Math.max((parent.height - height) / 2, list.y)
    }

    DeletedList {
        id: list

        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: head.bottom
        anchors.topMargin: 4 * Theme.unit
        deleted: root.deleted
        focus: true
        visible: !root.deleted.empty
        width: Math.min(240 * Theme.unit, root.width - 8 * Theme.unit)
        onRestored: root.restore()
    }

    Ask {
        explanation: qsTr("The audio, transcript and notes are erased from this computer.\nThis can't be undone.")
        firstAnswer: qsTr("Keep")
        grave: true
        question: root.deleted.question
        secondAnswer: qsTr("Erase now")
        visible: root.deleted.asking
        onDismissed: root.deleted.stopAsking()
        onFirst: root.deleted.stopAsking()
        onSecond: {
            root.commands.eraseDeleted(root.deleted.askedIDs)
            root.deleted.stopAsking()
        }
    }
}
