import QtQuick
import QtQuick.Layouts
import Varnet

// The name of the page, how much is selected or found, and the search, which stands below where the words are large.
GridLayout {
    id: root

    required property AppCommands commands
    required property LibraryModel library
    readonly property bool narrow: width < 26 * Theme.body.lineHeight

    signal passedOn

    function search() {
        field.begin()
    }

    columnSpacing: 3 * Theme.unit
    rowSpacing: 2 * Theme.unit

    RowLayout {
        Layout.columnSpan: root.narrow ? 2 : 1
        spacing: 3 * Theme.unit

        ThemedText {
            Accessible.role: Accessible.Heading
            Layout.alignment: Qt.AlignBaseline
            Layout.fillWidth: true
            Layout.maximumWidth: Math.ceil(implicitWidth)
            Layout.minimumWidth: Math.min(implicitWidth, root.width * 0.29)
            text: qsTr("All Meetings")
            type: Theme.title
        }

        ThemedText {
            Layout.alignment: Qt.AlignBaseline
            Layout.fillWidth: true
            Layout.minimumWidth: Math.ceil(implicitWidth)
            color: Theme.secondary
            text: root.library.summary
        }
    }

    SearchField {
        id: field

        Accessible.name: qsTr("Search titles and transcripts")
        Layout.column: root.narrow ? 0 : 1
        Layout.fillWidth: true
        Layout.maximumWidth: root.narrow ? root.width : 70 * Theme.unit
        Layout.minimumWidth: 30 * Theme.unit
        Layout.preferredWidth: 70 * Theme.unit
        Layout.row: root.narrow ? 1 : 0
        placeholderText: hint.advanceWidth < width - leftPadding - rightPadding ? hint.text : qsTr("Search")
        visible: !root.library.empty
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
        Layout.column: root.narrow ? 1 : 2
        Layout.fillWidth: true
        Layout.maximumWidth: implicitWidth
        Layout.minimumWidth: Math.min(implicitWidth, root.width * (root.narrow ? 0.5 : 0.24))
        Layout.row: root.narrow ? 1 : 0
        enabled: root.commands.importEnabled
        text: qsTr("Import Audio…")
        visible: !root.library.empty
        onClicked: root.commands.importAudio()
    }
}
