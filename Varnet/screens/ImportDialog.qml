import QtCore
import QtQuick
import QtQuick.Dialogs
import Varnet

// Asks for an audio file to import. It is made when the router is asked to import, and gone afterwards.
FileDialog {
    id: root

    required property AppCommands commands
    required property AppRouter router
    required property ImportPicker picker

    acceptLabel: qsTr("Import")
    fileMode: FileDialog.OpenFile
    nameFilters: [root.commands.importFilter, qsTr("All files (*)")]
    title: qsTr("Import Audio")

    Component.onCompleted: {
        // A folder for music need not be there.
        const music = StandardPaths.locate(StandardPaths.MusicLocation, "", StandardPaths.LocateDirectory)
        const home = StandardPaths.writableLocation(StandardPaths.HomeLocation)
        const last = picker.lastFolder
        currentFolder = last.toString() !== "" ? last : music.toString() !== "" ? music : home
        open()
    }
    onAccepted: {
        root.picker.lastFolder = currentFolder
        root.commands.importFiles([selectedFile])
        root.router.importing = false
    }
    onRejected: root.router.importing = false
}
