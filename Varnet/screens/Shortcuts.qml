import QtQuick
import Varnet

// The keys that work wherever the focus is. A question over the window has the keys for itself, apart from those of the
// whole application.
Item {
    id: root

    required property AppCommands commands
    required property AppRouter router
    required property MeetingAppDelegate delegate

    Shortcut {
        context: Qt.ApplicationShortcut
        enabled: root.commands.recordEnabled
        sequence: "Ctrl+N"
        onActivated: root.commands.toggleRecording()
    }

    Shortcut {
        enabled: root.commands.importEnabled
        sequences: [StandardKey.Open]
        onActivated: root.commands.importAudio()
    }

    Shortcut {
        context: Qt.ApplicationShortcut
        sequence: "Ctrl+1"
        onActivated: root.commands.showLibrary()
    }

    Shortcut {
        context: Qt.ApplicationShortcut
        sequence: "Ctrl+2"
        onActivated: root.commands.showDeleted()
    }

    Shortcut {
        sequence: "Ctrl+,"
        onActivated: root.commands.showSettings()
    }

    Shortcut {
        enabled: root.router.showingMeeting
        sequence: "Ctrl+Shift+H"
        onActivated: root.commands.openHistory()
    }

    Shortcut {
        enabled: root.commands.canUndo
        sequences: [StandardKey.Undo]
        onActivated: root.commands.undo()
    }

    Shortcut {
        enabled: root.commands.canRedo
        sequences: [StandardKey.Redo]
        onActivated: root.commands.redo()
    }

    Shortcut {
        enabled: root.router.showingMeeting
        sequences: [StandardKey.Cancel]
        onActivated: root.commands.showLibrary()
    }

    Shortcut {
        context: Qt.ApplicationShortcut
        sequences: [StandardKey.Quit]
        onActivated: root.delegate.quit()
    }

    Shortcut {
        sequences: [StandardKey.Find]
        onActivated: root.commands.searchLibrary()
    }
}
