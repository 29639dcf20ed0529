import QtCore
import QtQuick
import QtQuick.Dialogs
import Varnet

// Asks where the selected meeting's Markdown goes. It is made when the router is asked to export, and gone afterwards.
FileDialog {
    id: root

    required property AppCommands commands
    required property AppRouter router

    acceptLabel: qsTr("Export")
    defaultSuffix: "md"
    fileMode: FileDialog.SaveFile
    nameFilters: [qsTr("Markdown (*.md)"), qsTr("All files (*)")]
    title: qsTr("Export meeting")

    Component.onCompleted: {
        // A folder for documents need not be there.
        const documents = StandardPaths.locate(StandardPaths.DocumentsLocation, "", StandardPaths.LocateDirectory)
        currentFolder = documents.toString() === "" ? StandardPaths.writableLocation(StandardPaths.HomeLocation) : documents
        selectedFile = currentFolder + "/Meeting.md"
        open()
    }
    onAccepted: {
        root.commands.exportSelected(selectedFile)
        root.router.exporting = false
    }
    onRejected: root.router.exporting = false
}
