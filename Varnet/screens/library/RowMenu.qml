import QtQuick
import QtQuick.Controls.Basic
import Varnet

// What can be done with the selected meetings.
ThemedMenu {
    id: root

    required property AppCommands commands
    required property AppRouter router
    required property LibraryModel library
    readonly property bool single: library.selectedCount === 1

    title: qsTr("What to do with it")

    ThemedMenuItem {
        keys: qsTr("Enter")
        text: qsTr("Open")
        visible: root.single
        onTriggered: root.commands.openSelected()
    }

    ThemedMenuItem {
        keys: qsTr("F2")
        text: qsTr("Rename")
        visible: root.single
        onTriggered: root.library.beginRename()
    }

    ThemedMenuItem {
        text: qsTr("Export…")
        visible: root.single
        onTriggered: root.router.exporting = true
    }

    ThemedMenuItem {
        text: qsTr("Version history")
        visible: root.single
        onTriggered: root.commands.openHistory()
    }

    ThemedMenuItem {
        enabled: root.commands.deleteEnabled
        keys: qsTr("Del")
        text: root.single ? qsTr("Delete") : qsTr("Delete %Ln meetings", "", root.library.selectedCount)
        onTriggered: root.commands.deleteSelected()
    }
}
