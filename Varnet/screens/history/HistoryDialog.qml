import QtQuick
import Varnet

// The saved versions of a meeting: the list, a preview of the chosen one, and what to take back from it.
ThemedDialog {
    id: root

    required property AppCommands commands
    required property VersionHistory history

    preferredHeight: 34 * Theme.body.lineHeight
    preferredWidth: 50 * Theme.body.lineHeight
    subtitle: history.title
    title: qsTr("Version history")
    onDismissed: commands.closeHistory()

    Versions {
        focus: true
        history: root.history
    }
}
