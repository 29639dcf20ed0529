import QtQuick
import Varnet

// The settings, over whichever page is up.
ThemedDialog {
    id: root

    required property AppCommands commands
    required property SettingsState settings

    preferredHeight: 24 * Theme.body.lineHeight
    preferredWidth: 30 * Theme.body.lineHeight
    title: qsTr("Settings")
    onAboutToShow: settings.forgetProblem()
    onDismissed: commands.closeSettings()

    SettingsPages {
        commands: root.commands
        focus: true
        settings: root.settings
    }
}
