import QtQuick
import Varnet

// What follows the turns: the words on their way, and what an import brought along.
Column {
    id: root

    required property MeetingPage page

    PartialWords {
        page: root.page
        width: root.width
    }

    Column {
        spacing: 2 * Theme.unit
        topPadding: 6 * Theme.unit
        visible: root.page.importedText !== ""
        width: root.width

        Rectangle {
            color: Theme.line
            height: 1
            width: parent.width
        }

        ThemedText {
            Accessible.role: Accessible.Heading
            text: qsTr("Imported with this meeting")
            type: Theme.emphasis
        }

        SelectableText {
            Accessible.name: qsTr("Imported with this meeting")
            activeFocusOnTab: true
            color: Theme.secondary
            text: root.page.importedText
            width: parent.width
        }
    }
}
