import QtQuick
import QtQuick.Controls.Basic
import Varnet

// All meetings by day. Arrows move the selection, Enter opens it.
FocusScope {
    id: root

    required property AppCommands commands
    required property LibraryModel library

    ThemedText {
        id: heading

        Accessible.role: Accessible.Heading
        anchors.left: list.left
        anchors.leftMargin: 4 * Theme.unit
        anchors.top: parent.top
        anchors.topMargin: 7 * Theme.unit
        text: qsTr("All Meetings")
        type: Theme.title
    }

    EmptyLibrary {
        anchors.centerIn: parent
        visible: root.library.empty
        width: Math.min(130 * Theme.unit, root.width - 16 * Theme.unit)
    }

    ListView {
        id: list

        Accessible.name: qsTr("Meetings")
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: heading.bottom
        anchors.topMargin: 2 * Theme.unit
        bottomMargin: 6 * Theme.unit
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: root.library.selectedRow
        focus: true
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        model: root.library
        reuseItems: true
        visible: !root.library.empty
        width: Math.min(240 * Theme.unit, root.width - 8 * Theme.unit)

        Keys.onDownPressed: root.library.moveSelection(1)
        Keys.onEnterPressed: root.commands.openSelected()
        Keys.onReturnPressed: root.commands.openSelected()
        Keys.onUpPressed: root.library.moveSelection(-1)
        Keys.onPressed: event => {
            const rows = ({ [Qt.Key_PageDown]: 10, [Qt.Key_PageUp]: -10, [Qt.Key_End]: count, [Qt.Key_Home]: -count })
            event.accepted = event.key in rows
            if (event.accepted)
                root.library.moveSelection(rows[event.key])
        }

        ScrollBar.vertical: ScrollBar {}
        delegate: MeetingRow {
            required property int index

            current: ListView.isCurrentItem
            focused: list.activeFocus
            width: ListView.view.width
            onChosen: {
                root.library.select(index)
                root.commands.openSelected()
            }
        }
    }
}
