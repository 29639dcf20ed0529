import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The user's own notes and beside them the draft; one above the other where it is narrow. While a meeting is recorded
// its notes have all the room.
FocusScope {
    id: root

    required property AppCommands commands
    required property MeetingPage page
    required property AudioPlayback playback
    readonly property bool drafts: page.draft.present || !page.live
    readonly property bool wide: width >= 44 * Theme.body.lineHeight

    OwnNotes {
        id: own

        anchors.left: parent.left
        focus: true
        height: root.drafts && !root.wide ? (root.height - y) * 0.45 : root.height - y - 6 * Theme.unit
        page: root.page
        width: root.drafts && root.wide ? (root.width - 6 * Theme.unit) / 2 : root.width
        y: 4 * Theme.unit
    }

    DraftView {
        id: draft

        anchors.bottom: parent.bottom
        anchors.left: root.wide ? own.right : parent.left
        anchors.leftMargin: root.wide ? 6 * Theme.unit : 0
        anchors.right: parent.right
        anchors.top: root.wide ? own.top : own.bottom
        anchors.topMargin: root.wide ? 0 : 4 * Theme.unit
        commands: root.commands
        page: root.page
        playback: root.playback
        visible: root.drafts

        ScrollBar.vertical: ThemedScrollBar {
            anchors.left: draft.right
            height: draft.height
            parent: root
            visible: draft.visible
            y: draft.y
        }
    }
}
