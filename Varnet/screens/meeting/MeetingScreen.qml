import QtQuick
import QtQuick.Layouts
import Varnet

// One meeting: its head, what is heard while it is live, the transcript and the notes.
FocusScope {
    id: root

    required property AppCommands commands
    required property AppRouter router
    required property MeetingPage page
    required property AudioPlayback playback
    readonly property real footing: player.height // what stands below the words
    readonly property Item typing: Window.activeFocusItem
    readonly property bool live: page.live

    readonly property bool present: page.present

    onLiveChanged: if (live) tabs.currentIndex = 0 // what is being said comes first
    onPresentChanged: if (!present) tabs.currentIndex = 0

    // The keys of the player, where they do not belong to what is being typed.
    Keys.enabled: !(typing instanceof TextInput) && !(typing instanceof TextEdit)
    Keys.onLeftPressed: playback.skip(-5)
    Keys.onRightPressed: playback.skip(5)
    Keys.onSpacePressed: playback.toggle()

    Shortcut {
        enabled: root.visible && root.present
        sequence: "Ctrl+Shift+F"
        onActivated: {
            tabs.currentIndex = 0
            transcript.find()
        }
    }

    Shortcut {
        enabled: root.visible && root.present
        sequences: ["Ctrl+Tab", "Ctrl+Shift+Tab"]
        onActivated: tabs.step(1)
    }

    Connections {
        function onTurnAsked(row) {
            tabs.currentIndex = 0
            Qt.callLater(transcript.point, row) // once it has its place
        }

        target: root.page
    }

    ColumnLayout {
        id: content

        anchors.bottom: player.top
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.topMargin: (head.narrow ? 3 : 6) * Theme.unit
        spacing: (head.narrow ? 2 : 3) * Theme.unit
        width: Math.min(220 * Theme.unit, root.width - (head.narrow ? 8 : 16) * Theme.unit)

        MeetingHead {
            id: head

            Layout.fillWidth: true
            commands: root.commands
            narrow: root.width > 0 && root.width < 30 * Theme.body.lineHeight
            page: root.page
        }

        LiveStrip {
            Layout.fillWidth: true
            page: root.page
            visible: root.page.live
        }

        Banner {
            Layout.fillWidth: true
            message: root.page.callMissingText
            tone: 1
            visible: root.page.callMissing
        }

        Item {
            Layout.fillWidth: true
            implicitHeight: tabs.implicitHeight
            visible: root.present

            MeetingTabs {
                id: tabs

                anchors.left: parent.left
            }

            MeetingActions {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                anchors.verticalCenterOffset: -0.5 * Theme.unit // on the words of the tabs
                commands: root.commands
                page: root.page
                room: parent.width - tabs.width - 8 * Theme.unit
                router: root.router
            }

            Rectangle {
                anchors.bottom: parent.bottom
                color: Theme.line
                height: 1
                width: parent.width
                z: -1
            }
        }

        StackLayout {
            Layout.topMargin: -content.spacing
            currentIndex: tabs.currentIndex

            TranscriptView {
                id: transcript

                commands: root.commands
                focus: visible
                page: root.page
                playback: root.playback
            }

            NotesView {
                commands: root.commands
                focus: visible
                page: root.page
                playback: root.playback
            }
        }
    }

    PlayerBar {
        id: player

        anchors.bottom: parent.bottom
        contentWidth: content.width
        height: visible ? implicitHeight : 0
        playback: root.playback
        width: parent.width
    }
}
