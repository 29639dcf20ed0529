import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The rows of the deleted meetings. The keys are those of the library; Enter restores what is selected.
ListView {
    id: root

    required property DeletedModel deleted

    signal restored

    function selectForMenu(row, item) {
        if (!item.selected)
            deleted.choose(row, Qt.NoModifier)
    }

    Accessible.name: qsTr("Deleted meetings")
    Accessible.role: Accessible.List
    activeFocusOnTab: true
    bottomMargin: 6 * Theme.unit
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    currentIndex: deleted.currentRow
    highlightMoveDuration: 0
    keyNavigationEnabled: false
    model: deleted
    reuseItems: true

    Keys.onDeletePressed: deleted.askToErase()
    Keys.onDownPressed: event => deleted.move(1, event.modifiers)
    Keys.onEnterPressed: restored()
    Keys.onReturnPressed: restored()
    Keys.onSpacePressed: deleted.choose(currentIndex, Qt.ControlModifier)
    Keys.onUpPressed: event => deleted.move(-1, event.modifiers)
    Keys.onPressed: event => {
        const rows = ({ [Qt.Key_PageDown]: 10, [Qt.Key_PageUp]: -10, [Qt.Key_End]: count, [Qt.Key_Home]: -count })
        event.accepted = event.key in rows || event.matches(StandardKey.SelectAll)
        if (event.key in rows)
            deleted.move(rows[event.key], event.modifiers)
        else if (event.accepted)
            deleted.selectAll()
    }

    ScrollBar.vertical: ThemedScrollBar {}
    delegate: DeletedRow {
        required property int index

        current: ListView.isCurrentItem
        focused: root.activeFocus
        width: ListView.view.width
        onChosen: modifiers => {
            root.forceActiveFocus()
            root.deleted.choose(index, modifiers)
        }
        onMenuAsked: at => {
            root.forceActiveFocus()
            root.selectForMenu(index, this)
            menu.popup(this, at.x, at.y)
        }
    }

    Shortcut {
        enabled: root.activeFocus && root.currentItem
        sequences: ["Menu", "Shift+F10"]
        onActivated: {
            root.selectForMenu(root.currentIndex, root.currentItem)
            menu.popupAtFirst(root.currentItem, 8 * Theme.unit, root.currentItem.height - 2 * Theme.unit)
        }
    }

    ThemedMenu {
        id: menu

        title: qsTr("What to do with it")

        ThemedMenuItem {
            keys: qsTr("Enter")
            text: root.deleted.restoreText
            onTriggered: root.restored()
        }

        ThemedMenuItem {
            keys: qsTr("Del")
            text: root.deleted.eraseText
            onTriggered: root.deleted.askToErase()
        }
    }
}
