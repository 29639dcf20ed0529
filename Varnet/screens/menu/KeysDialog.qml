import QtQuick
import Varnet

// All keys of the application, to be read.
ThemedDialog {
    preferredHeight: 60 * Theme.body.lineHeight
    preferredWidth: 28 * Theme.body.lineHeight
    title: qsTr("Keyboard shortcuts")
    onDismissed: close()

    KeysList {
        focus: true
    }
}
