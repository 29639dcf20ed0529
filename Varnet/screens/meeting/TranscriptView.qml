import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The turns of a meeting, and below them the words that are still being recognised. While it is live it follows the
// newest words, and while it is played the turn being played, until the reader scrolls away or edits.
FocusScope {
    id: root

    required property AppCommands commands
    required property MeetingPage page
    required property AudioPlayback playback
    readonly property bool live: page.live
    property bool following: true

    function find() {
        page.find.begin(list.currentIndex)
        findBar.begin()
    }

    function point(row) {
        list.point(row)
        following = caughtUp()
    }

    // Whether the place to follow is in view.
    function caughtUp() {
        if (page.live)
            return list.atYEnd
        const item = list.itemAtIndex(playback.playingTurn)
        return item !== null && item.y < list.contentY + list.height && item.y + item.height > list.contentY
    }

    function follow() {
        if (!following)
            return
        if (page.live)
            list.showNewest()
        else if (playback.playing && playback.playingTurn >= 0 && list.editing < 0)
            list.bring(playback.playingTurn)
    }

    onLiveChanged: following = true
    onVisibleChanged: following = true

    Keys.onEscapePressed: event => {
        event.accepted = page.find.open
        if (event.accepted)
            findBar.close()
    }
    Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape && page.find.open

    Connections {
        function onPlayingChanged() {
            root.following = true
            root.follow()
        }

        function onPlayingTurnChanged() {
            if (!root.playback.playing && root.playback.playingTurn >= 0 && list.editing < 0)
                list.bring(root.playback.playingTurn) // the user went there
            else
                root.follow()
        }

        target: root.playback
    }

    Connections {
        function onFound() {
            list.currentIndex = root.page.find.row
            list.bring(list.currentIndex)
            root.following = root.caughtUp()
        }

        target: root.page.find
    }

    FindBar {
        id: findBar

        find: root.page.find
        height: visible ? implicitHeight : 0
        visible: root.page.find.open
        width: parent.width
        onClosed: list.forceActiveFocus()
    }

    TurnList {
        id: list

        anchors.fill: parent
        anchors.topMargin: findBar.height
        focus: true
        page: root.page
        playback: root.playback

        onContentHeightChanged: Qt.callLater(root.follow)
        onContentYChanged: if (moving || bar.pressed) root.following = root.caughtUp()
        onEditingChanged: if (editing >= 0) root.following = false
        onHeightChanged: Qt.callLater(root.follow)
        onLooked: root.following = root.caughtUp()
        onPlayed: root.following = true

        // In the margin of the page: the rows have the whole width.
        ScrollBar.vertical: ThemedScrollBar {
            id: bar

            anchors.left: list.right
            height: list.height
            parent: root
            y: list.y
        }
    }

    EmptyTranscript {
        anchors.horizontalCenter: parent.horizontalCenter
        commands: root.commands
        page: root.page
        visible: list.count === 0 && root.page.partialTurns.count === 0 && root.page.partialText === "" && root.page.importedText === ""
        width: Math.min(24 * Theme.body.lineHeight, parent.width)
        y: Math.max(4 * Theme.unit, (parent.height - height) / 3)
    }

    Pill {
        readonly property bool plays: root.playback.playing && root.playback.playingTurn >= 0

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 4 * Theme.unit
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: plays ? "play" : "down"
        text: plays ? qsTr("Jump to playing") : qsTr("Jump to live")
        visible: (plays || root.page.live) && !root.following
        onClicked: {
            root.following = true
            root.follow()
        }
    }
}
