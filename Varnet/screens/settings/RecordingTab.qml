import QtQuick
import QtQuick.Layouts
import Varnet

// What a recording captures.
ColumnLayout {
    id: root

    required property SettingsState settings

    spacing: 4 * Theme.unit

    SettingsRow {
        Layout.fillWidth: true
        text: qsTr("Record")

        ThemedComboBox {
            currentIndex: root.settings.captureMode
            enabled: !root.settings.recording
            model: root.settings.captureModes
            name: qsTr("Record")
            onActivated: index => root.settings.chooseCaptureMode(index)
        }
    }

    Explanation {
        text: qsTr("Meeting audio records the other people in the call from Zoom, Meet, Teams or any app. Use headphones to avoid echo.")
    }
}
