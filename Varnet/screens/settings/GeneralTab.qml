import QtQuick
import QtQuick.Layouts
import Varnet

// How the program lives on this desktop.
ColumnLayout {
    id: root

    required property SettingsState settings

    ThemedSwitch {
        Layout.fillWidth: true
        checked: root.settings.startsAtLogin
        text: qsTr("Start %1 when I log in").arg(Qt.application.displayName)
        onToggled: root.settings.setStartsAtLogin(checked)
    }
}
