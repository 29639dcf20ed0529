import QtCore
import QtQuick
import QtQuick.Dialogs
import Varnet

// Asks where the selected meeting's Markdown goes, whenever the router is asked to export.
FileDialog {
    id: root

    required property AppCommands commands
    required property AppRouter router

    acceptLabel: qsTr("Export")
    defaultSuffix: "md"
    fileMode: FileDialog.SaveFile
    nameFilters: [qsTr("Markdown (*.md)"), qsTr("All files (*)")]
    title: qsTr("Export meeting")

    onAccepted: {
        root.router.exporting = false
        root.commands.exportSelected(selectedFile)
    }
    onRejected: root.router.exporting = false

    Connections {
        function onExportingChanged() {
            if (!root.router.exporting)
                return
            // A folder for documents need not be there.
            const documents = StandardPaths.locate(StandardPaths.DocumentsLocation, "", StandardPaths.LocateDirectory)
            root.currentFolder = documents.toString() === "" ? StandardPaths.writableLocation(StandardPaths.HomeLocation) : documents
            root.selectedFile = root.currentFolder + "/Meeting.md"
            root.open()
        }

        target: root.router
    }
}
