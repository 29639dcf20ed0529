import QtQuick
import Varnet

// What stands in place of turns, and the way to get some where there is audio.
Column {
    id: root

    required property AppCommands commands
    required property MeetingPage page

    spacing: 4 * Theme.unit

    ThemedText {
        color: Theme.faint
        horizontalAlignment: Text.AlignHCenter
        text: root.page.emptyText
        type: Theme.reading
        width: parent.width
        wrapMode: Text.Wrap
    }

    PlainButton {
        anchors.horizontalCenter: parent.horizontalCenter
        text: root.commands.transcribeTitle
        visible: root.commands.transcribeAgainEnabled
        onClicked: root.commands.askToTranscribeAgain()
    }

    PlainButton {
        anchors.horizontalCenter: parent.horizontalCenter
        enabled: root.commands.importEnabled
        text: qsTr("Import Audio…")
        visible: root.page.importFailed
        onClicked: root.commands.importAudio()
    }

    PlainButton {
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("All Meetings")
        visible: !root.page.present
        onClicked: root.commands.showLibrary()
    }
}
