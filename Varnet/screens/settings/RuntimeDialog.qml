import QtCore
import QtQuick
import QtQuick.Dialogs
import Varnet

// Asks for the folder of the engines.
FolderDialog {
    id: root

    required property SettingsState settings

    acceptLabel: qsTr("Choose")
    title: qsTr("Choose the developer project folder that contains the .runtime engine files.")

    Component.onCompleted: {
        currentFolder = StandardPaths.writableLocation(StandardPaths.HomeLocation)
        open()
    }
    onAccepted: root.settings.chooseRuntimeRoot(selectedFolder)
}
