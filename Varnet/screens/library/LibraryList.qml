import QtQuick
import Varnet

// The rows of the library. Arrows move the selection, Shift extends it, Ctrl with Space takes rows in and out.
ListView {
    id: root

    required property AppCommands commands
    required property AppRouter router
    required property LibraryModel library

    function loadedMenu() {
        menu.active = true
        return menu.item
    }

    // As the keyboard asks for it: at the current row, with the first command chosen.
    function showMenu() {
        if (!currentItem)
            return
        library.selectForMenu(currentIndex)
        loadedMenu().popupAtFirst(currentItem, 8 * Theme.unit, currentItem.height - 2 * Theme.unit)
    }

    Accessible.name: qsTr("Meetings")
    Accessible.role: Accessible.List
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    currentIndex: library.currentRow
    highlightMoveDuration: 0
    keyNavigationEnabled: false
    model: library
    reuseItems: true
    // What comes to lie over the end leaves the current row in view.
    onBottomMarginChanged: if (currentItem)
        contentY = Math.max(contentY, currentItem.y + currentItem.height + bottomMargin - height)

    Keys.onDeletePressed: commands.deleteSelected()
    Keys.onDownPressed: event => library.moveBy(1, event.modifiers)
    Keys.onEnterPressed: commands.openSelected()
    Keys.onPressed: event => {
        const rows = ({ [Qt.Key_PageDown]: 10, [Qt.Key_PageUp]: -10, [Qt.Key_End]: count, [Qt.Key_Home]: -count })
        event.accepted = true
        if (event.key in rows)
            library.moveBy(rows[event.key], event.modifiers)
        else if (event.matches(StandardKey.SelectAll))
            library.selectAll()
        else if (event.key === Qt.Key_F2 && event.modifiers === Qt.NoModifier && library.currentRow >= 0)
            library.beginRename()
        else if (event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier)
            showMenu()
        else
            event.accepted = false
    }
    Keys.onReturnPressed: commands.openSelected()
    Keys.onSpacePressed: event => library.clickRow(currentIndex, event.modifiers)
    Keys.onUpPressed: event => library.moveBy(-1, event.modifiers)

    delegate: MeetingRow {
        id: row

        required property int index

        current: ListView.isCurrentItem
        focused: root.activeFocus
        width: ListView.view.width
        onChosen: modifiers => {
            root.forceActiveFocus()
            if (root.library.clickRow(index, modifiers))
                root.commands.openSelected()
        }
        onMenuAsked: (x, y) => {
            root.forceActiveFocus()
            root.library.selectForMenu(index)
            root.loadedMenu().popup(row, x, y)
        }
        onRenameEnded: {
            const focused = root.activeFocus
            root.library.endRename()
            if (focused)
                root.forceActiveFocus()
        }
        onRenamed: title => root.library.rename(title)
    }

    // A title that is being typed is kept before anything is done with its meeting.
    Connections {
        function onAboutToAct() {
            if (root.currentItem && root.currentItem.renaming)
                root.currentItem.forceActiveFocus()
        }

        target: root.commands
    }

    Loader {
        id: menu

        active: false
        Component.onCompleted: setSource("RowMenu.qml", {
            "commands": root.commands,
            "library": root.library,
            "router": root.router
        })
    }
}
