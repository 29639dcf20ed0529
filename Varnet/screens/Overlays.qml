import QtQuick
import Varnet

// What the first frame does without: the keys, and what comes up over the page.
Item {
    id: root

    required property MainWindow frame

    Shortcuts {
        commands: root.frame.commands
        delegate: root.frame.delegate
        pagesShown: !root.frame.onboarding.showing
        router: root.frame.router
    }

    HistoryDialog {
        commands: root.frame.commands
        history: root.frame.history
        visible: root.frame.router.historyOpen
    }

    SettingsDialog {
        commands: root.frame.commands
        settings: root.frame.settings
        visible: root.frame.router.settingsOpen
    }

    Loader {
        active: root.frame.router.exporting
        sourceComponent: ExportDialog {
            commands: root.frame.commands
            parentWindow: root.Window.window
            router: root.frame.router
        }
    }

    ImportPicker {
        commands: root.frame.commands
        router: root.frame.router
    }

    DropZone {
        anchors.fill: parent
        commands: root.frame.commands
    }

    Questions {
        commands: root.frame.commands
        delegate: root.frame.delegate
        frame: root.frame
        router: root.frame.router
    }
}
