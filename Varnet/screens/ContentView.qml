import QtQuick
import Varnet

// The sidebar and the page that is up.
Item {
    id: root

    required property MainWindow frame
    readonly property Item page: frame.router.showingLibrary ? library : frame.router.showingDeleted ? deleted : meeting

    Rectangle {
        id: sidebar

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.top: parent.top
        color: Theme.window
        width: Math.min(12 * Theme.body.lineHeight, root.width * 0.36) // 240; large words leave the content its room

        Loader {
            active: root.frame.shown
            anchors.fill: parent
            Component.onCompleted: setSource("sidebar/Sidebar.qml", {"frame": root.frame})
        }
    }

    Rectangle {
        id: line

        anchors.bottom: parent.bottom
        anchors.left: sidebar.right
        anchors.top: parent.top
        color: Theme.line
        width: 1
    }

    Later {
        id: banners

        anchors.left: line.right
        anchors.right: parent.right
        frame: root.frame
        height: visible ? implicitHeight : 0
        part: Qt.resolvedUrl("Banners.qml")
        properties: ({
            "banner": root.frame.banner,
            "commands": root.frame.commands,
            "work": root.frame.work
        })
        visible: wanted
        wanted: root.frame.banner.message !== "" || root.frame.banner.saveMessage !== "" || root.frame.work.showing
    }

    Item {
        anchors.bottom: parent.bottom
        anchors.left: line.right
        anchors.right: parent.right
        anchors.top: banners.bottom

        LibraryScreen {
            id: library

            anchors.fill: parent
            covered: root.frame.toast.showing && toast.item ? toast.item.height + 6 * Theme.unit : 0
            focus: visible
            frame: root.frame
            visible: root.frame.router.showingLibrary
        }

        Later {
            id: deleted

            anchors.fill: parent
            focus: visible
            frame: root.frame
            part: Qt.resolvedUrl("deleted/DeletedScreen.qml")
            properties: ({
                "commands": root.frame.commands,
                "deleted": root.frame.deleted,
                "focus": true
            })
            visible: root.frame.router.showingDeleted
            wanted: visible
        }

        Later {
            id: meeting

            anchors.fill: parent
            focus: visible
            frame: root.frame
            part: Qt.resolvedUrl("meeting/MeetingScreen.qml")
            properties: ({
                "commands": root.frame.commands,
                "focus": true,
                "page": root.frame.meetingPage,
                "playback": root.frame.playback,
                "router": root.frame.router
            })
            visible: root.frame.router.showingMeeting
            wanted: visible
        }
    }

    Later {
        id: toast

        readonly property real room: root.width - sidebar.width - 12 * Theme.unit

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 6 * Theme.unit + (root.frame.router.showingMeeting && meeting.item ? meeting.item.footing : 0)
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.horizontalCenterOffset: sidebar.width / 2
        frame: root.frame
        part: Qt.resolvedUrl("components/Toast.qml")
        properties: ({ "commands": root.frame.commands, "toast": root.frame.toast })
        width: item ? Math.min(item.implicitWidth, room) : 0
    }

    Connections {
        function onFocusLeft() {
            root.page.forceActiveFocus()
        }

        target: toast.item
    }
}
