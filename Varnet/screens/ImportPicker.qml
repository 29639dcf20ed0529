import QtQuick
import Varnet

// Presents the dialog that picks an audio file while the router asks for it. Where the desktop has no such dialog, that
// is said, and the rest of the window works all the same.
Loader {
    id: root

    required property AppCommands commands
    required property AppRouter router
    property url lastFolder // of the file that was picked last; empty before the first

    onStatusChanged: if (status === Loader.Error) root.commands.importFailed(qsTr("The file picker could not be opened."))

    Connections {
        function onImportingChanged() {
            if (root.router.importing)
                root.setSource("ImportDialog.qml", {
                    "commands": root.commands,
                    "parentWindow": root.Window.window,
                    "picker": root,
                    "router": root.router
                })
            else
                root.source = ""
        }

        target: root.router
    }
}
