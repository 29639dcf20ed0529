import QtQuick
import QtQuick.Layouts
import Varnet

// The search through the library, and the way of other recordings into it.
RowLayout {
    id: root

    required property AppCommands commands
    required property LibraryModel library

    signal passedOn

    function search() {
        field.begin()
    }

    spacing: 3 * Theme.unit

    SearchField {
        id: field

        Accessible.name: qsTr("Search titles and transcripts")
        Layout.fillWidth: true
        Layout.minimumWidth: 30 * Theme.unit
        Layout.preferredWidth: 70 * Theme.unit
        placeholderText: hint.advanceWidth < width - leftPadding - rightPadding ? hint.text : qsTr("Search")
        onActiveFocusChanged: if (activeFocus) root.library.prepareSearch()
        onPassedOn: root.passedOn()
        onTextChanged: root.library.query = text

        TextMetrics {
            id: hint

            font: field.font
            text: field.Accessible.name
        }

        Connections {
            function onQueryChanged() {
                field.text = root.library.query
            }

            target: root.library
        }
    }

    PlainButton {
        Layout.fillWidth: true
        Layout.maximumWidth: implicitWidth
        Layout.minimumWidth: Math.min(implicitWidth, root.width * 0.5)
        enabled: root.commands.importEnabled
        text: qsTr("Import Audio…")
        onClicked: root.commands.importAudio()
    }
}
