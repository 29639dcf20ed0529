import QtQuick
import QtQuick.Templates // its plugin has keys stop at a question, those that are made after it
import Varnet

// The keys that work wherever the focus is. A question over the window has the keys for itself, apart from those of the
// whole application.
Item {
    id: root

    required property MainWindow frame
    readonly property AppCommands commands: frame.commands
    readonly property AppRouter router: frame.router
    readonly property bool pagesShown: !frame.onboarding.showing

    Shortcut {
        autoRepeat: false // a key that is held down must not end what it has begun
        context: Qt.ApplicationShortcut
        enabled: root.commands.recordEnabled
        sequence: ShortcutKeys.record
        onActivated: root.commands.toggleRecording()
    }

    Shortcut {
        enabled: root.pagesShown && root.commands.importEnabled
        sequence: ShortcutKeys.importAudio
        onActivated: root.commands.importAudio()
    }

    Shortcut {
        context: Qt.ApplicationShortcut
        enabled: root.pagesShown
        sequence: ShortcutKeys.allMeetings
        onActivated: root.commands.showLibrary()
    }

    Shortcut {
        context: Qt.ApplicationShortcut
        enabled: root.pagesShown
        sequence: ShortcutKeys.recentlyDeleted
        onActivated: root.commands.showDeleted()
    }

    Shortcut {
        sequence: ShortcutKeys.settings
        onActivated: root.commands.showSettings()
    }

    Shortcut {
        sequence: ShortcutKeys.closeWindow
        onActivated: root.Window.window.close()
    }

    Shortcut {
        enabled: root.pagesShown && root.router.showingMeeting
        sequence: ShortcutKeys.history
        onActivated: root.commands.openHistory()
    }

    Shortcut {
        enabled: root.pagesShown && root.commands.canUndo
        sequence: ShortcutKeys.undo
        onActivated: root.commands.undo()
    }

    Shortcut {
        enabled: root.pagesShown && root.commands.canRedo
        sequence: ShortcutKeys.redo
        onActivated: root.commands.redo()
    }

    Shortcut {
        enabled: root.pagesShown && root.router.showingMeeting
        sequence: "Esc"
        onActivated: root.commands.showLibrary()
    }

    Shortcut {
        context: Qt.ApplicationShortcut
        sequence: ShortcutKeys.quit
        onActivated: root.frame.delegate.quit()
    }

    Shortcut {
        enabled: root.pagesShown
        sequence: ShortcutKeys.find
        onActivated: root.commands.searchLibrary()
    }
}
