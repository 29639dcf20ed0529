import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The commands of the application, for whoever doesn't know their keys.
ThemedMenu {
    id: root

    required property MainWindow frame
    readonly property AppCommands commands: frame.commands

    signal keysWanted

    title: qsTr("Main menu")
    width: 15 * Theme.body.lineHeight

    ThemedMenuItem {
        enabled: root.commands.recordEnabled
        keys: ShortcutKeys.record
        text: root.commands.recordTitle
        onTriggered: root.commands.toggleRecording()
    }

    ThemedMenuItem {
        enabled: root.commands.importEnabled
        keys: ShortcutKeys.importAudio
        text: qsTr("Import Audio…")
        onTriggered: root.commands.importAudio()
    }

    MenuLine {}

    ThemedMenuItem {
        enabled: root.commands.canUndo
        keys: ShortcutKeys.undo
        text: root.commands.undoText
        onTriggered: root.commands.undo()
    }

    ThemedMenuItem {
        enabled: root.commands.canRedo
        keys: ShortcutKeys.redo
        text: root.commands.redoText
        onTriggered: root.commands.redo()
    }

    MenuLine {}

    ThemedMenuItem {
        keys: ShortcutKeys.find
        text: qsTr("Find Meetings")
        onTriggered: root.commands.searchLibrary()
    }

    ThemedMenuItem {
        keys: ShortcutKeys.allMeetings
        text: qsTr("All Meetings")
        onTriggered: root.commands.showLibrary()
    }

    ThemedMenuItem {
        keys: ShortcutKeys.recentlyDeleted
        text: qsTr("Recently Deleted")
        onTriggered: root.commands.showDeleted()
    }

    MenuLine {}

    ThemedMenuItem {
        text: qsTr("Keyboard Shortcuts")
        onTriggered: root.keysWanted()
    }

    ThemedMenuItem {
        keys: ShortcutKeys.settings
        text: qsTr("Settings")
        onTriggered: root.commands.showSettings()
    }

    ThemedMenuItem {
        keys: ShortcutKeys.quit
        text: qsTr("Quit %1").arg(Qt.application.displayName)
        onTriggered: root.frame.delegate.quit()
    }
}
