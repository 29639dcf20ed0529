import QtQuick
import QtQuick.Layouts
import Varnet

// The name of the page, how much is selected or found, and the search.
RowLayout {
    id: root

    required property AppCommands commands
    required property LibraryModel library

    signal passedOn

    function search() {
        field.begin()
    }

    spacing: 3 * Theme.unit

    ThemedText {
        Accessible.role: Accessible.Heading
        Layout.fillWidth: true
        Layout.maximumWidth: implicitWidth
        Layout.minimumWidth: Math.min(implicitWidth, root.width * 0.29)
        text: qsTr("All Meetings")
        type: Theme.title
    }

    ThemedText {
        Accessible.name: text
        Accessible.role: Accessible.StaticText
        Layout.alignment: Qt.AlignBaseline
        Layout.fillWidth: true
        color: Theme.secondary
        text: root.library.summary
    }

    SearchField {
        id: field

        Layout.fillWidth: true
        Layout.maximumWidth: 70 * Theme.unit
        Layout.minimumWidth: 30 * Theme.unit
        Layout.preferredWidth: 70 * Theme.unit
        placeholderText: qsTr("Search titles and transcripts")
        visible: !root.library.empty
        onActiveFocusChanged: if (activeFocus) root.library.prepareSearch()
        onPassedOn: root.passedOn()
        onTextChanged: root.library.query = text

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
        Layout.minimumWidth: Math.min(implicitWidth, root.width * 0.24)
        enabled: root.commands.importEnabled
        text: qsTr("Import Audio…")
        visible: !root.library.empty
        onClicked: root.commands.importAudio()
    }
}
