import QtQuick
import QtQuick.Controls.Basic
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
        width: Math.min(130 * Theme.unit, root.width - 16 * Theme.unit)
        y: Math.max((parent.height - height) / 2, list.y)
    }

    ListView {
        id: list

        Accessible.name: qsTr("Deleted meetings")
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: head.bottom
        anchors.topMargin: 4 * Theme.unit
        bottomMargin: 6 * Theme.unit
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: root.deleted.currentRow
        focus: true
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        model: root.deleted
        reuseItems: true
        visible: !root.deleted.empty
        width: Math.min(240 * Theme.unit, root.width - 8 * Theme.unit)

        Keys.onDeletePressed: root.deleted.askToErase()
        Keys.onDownPressed: event => root.deleted.move(1, event.modifiers)
        Keys.onEnterPressed: root.restore()
        Keys.onReturnPressed: root.restore()
        Keys.onSpacePressed: root.deleted.choose(currentIndex, Qt.ControlModifier)
        Keys.onUpPressed: event => root.deleted.move(-1, event.modifiers)
        Keys.onPressed: event => {
            const rows = ({ [Qt.Key_PageDown]: 10, [Qt.Key_PageUp]: -10, [Qt.Key_End]: count, [Qt.Key_Home]: -count })
            event.accepted = event.key in rows || event.matches(StandardKey.SelectAll)
            if (event.key in rows)
                root.deleted.move(rows[event.key], event.modifiers)
            else if (event.accepted)
                root.deleted.selectAll()
        }

        ScrollBar.vertical: ThemedScrollBar {}
        delegate: DeletedRow {
            required property int index

            current: ListView.isCurrentItem
            focused: list.activeFocus
            width: ListView.view.width
            onChosen: modifiers => {
                list.forceActiveFocus()
                root.deleted.choose(index, modifiers)
            }
        }
    }

    Ask {
        explanation: qsTr("The audio, transcript and notes are erased from this computer. This can't be undone.")
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
