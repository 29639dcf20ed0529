import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// The versions, newest first, and below them how many could not be read.
ColumnLayout {
    id: root

    required property VersionHistory history

    spacing: 2 * Theme.unit

    ListView {
        id: list

        Accessible.name: qsTr("Versions")
        Accessible.role: Accessible.List
        Layout.fillHeight: true
        Layout.fillWidth: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: root.history.currentRow
        focus: true
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        model: root.history

        Keys.onDownPressed: root.history.moveSelection(1)
        Keys.onUpPressed: root.history.moveSelection(-1)
        Keys.onPressed: event => {
            const rows = ({ [Qt.Key_PageDown]: 10, [Qt.Key_PageUp]: -10, [Qt.Key_End]: count, [Qt.Key_Home]: -count })
            event.accepted = event.key in rows
            if (event.accepted)
                root.history.moveSelection(rows[event.key])
        }

        ScrollBar.vertical: ThemedScrollBar { policy: ScrollBar.AlwaysOn }
        delegate: VersionRow {
            required property int index

            current: ListView.isCurrentItem
            focused: list.activeFocus
            width: ListView.view.width
            onChosen: {
                list.forceActiveFocus()
                root.history.select(index)
            }
        }
    }

    ThemedText {
        Layout.bottomMargin: 2 * Theme.unit
        Layout.fillWidth: true
        Layout.leftMargin: 3 * Theme.unit
        Layout.rightMargin: 3 * Theme.unit
        color: Theme.amber
        text: root.history.unreadableText
        type: Theme.caption
        visible: text !== ""
        wrapMode: Text.Wrap
    }
}
