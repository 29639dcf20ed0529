import QtQuick
import QtQuick.Layouts
import Varnet

// What stands in the library when no meeting has the words that are searched for.
ColumnLayout {
    id: root

    required property LibraryModel library

    signal cleared

    spacing: Theme.unit

    ThemedText {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        maximumLineCount: 3
        text: qsTr("Nothing found for “%1”").arg(root.library.query)
        type: Theme.heading
        wrapMode: Text.Wrap
    }

    ThemedText {
        Layout.fillWidth: true
        color: Theme.secondary
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Titles and transcripts are searched for these letters, in this order.")
        wrapMode: Text.Wrap
    }

    PlainButton {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 3 * Theme.unit
        text: qsTr("Clear search")
        onClicked: root.cleared()
    }
}
