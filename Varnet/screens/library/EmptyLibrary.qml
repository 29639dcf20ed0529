import QtQuick
import QtQuick.Layouts
import Varnet

// What stands in the library before the first meeting.
ColumnLayout {
    id: root

    required property AppCommands commands

    spacing: Theme.unit

    BrandMark {
        Layout.alignment: Qt.AlignHCenter
        Layout.bottomMargin: 4 * Theme.unit
        Layout.preferredHeight: 2.5 * Theme.symbol
        Layout.preferredWidth: 3 * Theme.symbol
    }

    ThemedText {
        Layout.alignment: Qt.AlignHCenter
        text: qsTr("No meetings yet")
        type: Theme.heading
    }

    ThemedText {
        Layout.fillWidth: true
        color: Theme.secondary
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Press New Recording, or Ctrl+N, when your next call begins.")
        wrapMode: Text.Wrap
    }

    ThemedText {
        Layout.fillWidth: true
        color: Theme.secondary
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Or import audio that you have: drop it here, or choose a file.")
        wrapMode: Text.Wrap
    }

    PlainButton {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 3 * Theme.unit
        enabled: root.commands.importEnabled
        text: qsTr("Import Audio…")
        onClicked: root.commands.importAudio()
    }
}
