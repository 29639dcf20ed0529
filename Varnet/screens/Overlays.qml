import QtQuick
import Varnet

// What comes up over the page: dialogs, questions, and the place where files are dropped.
Item {
    id: root

    required property MainWindow frame

    WindowPalette {}

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
