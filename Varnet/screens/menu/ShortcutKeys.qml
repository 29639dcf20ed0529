pragma Singleton

import QtQuick

// The keys of the commands, for whoever listens to them and for whoever shows them.
QtObject {
    readonly property string allMeetings: "Ctrl+1"
    readonly property string closeWindow: "Ctrl+W"
    readonly property string exportMeeting: "Ctrl+Shift+E"
    readonly property string find: "Ctrl+F"
    readonly property string findInTranscript: "Ctrl+Shift+F"
    readonly property string history: "Ctrl+Shift+H"
    readonly property string importAudio: "Ctrl+O"
    readonly property string menu: "F10"
    readonly property string quit: "Ctrl+Q"
    readonly property string recentlyDeleted: "Ctrl+2"
    readonly property string record: "Ctrl+N"
    readonly property string redo: "Ctrl+Shift+Z"
    readonly property string rename: "F2"
    readonly property string selectAll: "Ctrl+A"
    readonly property string settings: "Ctrl+,"
    readonly property string undo: "Ctrl+Z"
    readonly property string writeNotes: "Ctrl+Shift+N"

    // What can be done where, with the keys as people read them. A place has none.
    readonly property var rows: [
        [qsTr("Everywhere"), ""],
        [qsTr("New Recording, Stop Recording"), record],
        [qsTr("Import Audio…"), importAudio],
        [qsTr("Undo"), undo],
        [qsTr("Redo"), redo],
        [qsTr("Find Meetings"), find],
        [qsTr("All Meetings"), allMeetings],
        [qsTr("Recently Deleted"), recentlyDeleted],
        [qsTr("Main menu"), menu],
        [qsTr("Settings"), settings],
        [qsTr("Close the window"), closeWindow],
        [qsTr("Quit"), quit],
        [qsTr("Lists of meetings"), ""],
        [qsTr("Open, restore"), qsTr("Enter")],
        [qsTr("Rename"), rename],
        [qsTr("Delete, erase"), qsTr("Del")],
        [qsTr("Select more"), qsTr("Shift+Up, Shift+Down")],
        [qsTr("Move without selecting"), qsTr("Ctrl+Up, Ctrl+Down")],
        [qsTr("Add to the selection, take out of it"), qsTr("Ctrl+Space")],
        [qsTr("Select all"), selectAll],
        [qsTr("Menu of the selection"), qsTr("Shift+F10")],
        [qsTr("Meeting"), ""],
        [qsTr("Back to the library"), qsTr("Esc")],
        [qsTr("Transcript, Notes"), qsTr("Ctrl+Tab")],
        [qsTr("Write notes"), writeNotes],
        [qsTr("Export…"), exportMeeting],
        [qsTr("Version history"), history],
        [qsTr("Play, pause"), qsTr("Space")],
        [qsTr("5 seconds back, 5 seconds forward"), qsTr("Left, Right")],
        [qsTr("Transcript"), ""],
        [qsTr("Find"), findInTranscript],
        [qsTr("Next match, previous match"), qsTr("Enter, Shift+Enter")],
        [qsTr("Play from the turn"), qsTr("Ctrl+Enter")],
        [qsTr("Edit the turn"), qsTr("Enter")],
        [qsTr("Leave the turn as it was"), qsTr("Esc")],
        [qsTr("Name the speaker"), rename],
        [qsTr("Menu of the turn"), qsTr("Shift+F10")]
    ]
}
