import QtQuick
import Varnet

// Presents the dialog that picks the folder of the engines. Where the desktop has no such dialog, that is said.
Loader {
    id: root

    required property SettingsState settings

    function choose() {
        source = "" // the one before
        setSource("RuntimeDialog.qml", { "parentWindow": root.Window.window, "settings": root.settings })
    }

    onStatusChanged: if (status === Loader.Error) root.settings.runtimeChooserFailed()
}
