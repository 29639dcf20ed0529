import QtQuick
import QtQuick.Layouts
import Varnet

// The sidebar and the page that is up.
Item {
    id: root

    required property MainWindow frame

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Sidebar {
            id: sidebar

            Layout.fillHeight: true
            Layout.preferredWidth: Math.min(implicitWidth, root.width * 0.36) // large words leave the content its room
            frame: root.frame
        }

        Rectangle {
            Layout.fillHeight: true
            color: Theme.line
            implicitWidth: 1
        }

        ColumnLayout {
            spacing: 0

            Later {
                Layout.fillWidth: true
                frame: root.frame
                part: Qt.resolvedUrl("Banners.qml")
                properties: ({
                    "banner": root.frame.banner,
                    "commands": root.frame.commands,
                    "work": root.frame.work
                })
                visible: wanted
                wanted: root.frame.banner.message !== "" || root.frame.banner.saveMessage !== "" || root.frame.work.showing
            }

            StackLayout {
                id: pages

                currentIndex: root.frame.router.page

                Loader {
                    focus: visible
                    Component.onCompleted: setSource("library/LibraryScreen.qml", {
                        "commands": root.frame.commands,
                        "focus": true,
                        "library": root.frame.library,
                        "router": root.frame.router
                    })
                    onLoaded: item.covered = Qt.binding(() => root.frame.toast.showing && toast.item ? toast.item.height + 6 * Theme.unit : 0)
                }

                Later {
                    focus: visible
                    frame: root.frame
                    part: Qt.resolvedUrl("deleted/DeletedScreen.qml")
                    properties: ({
                        "commands": root.frame.commands,
                        "deleted": root.frame.deleted,
                        "focus": true
                    })
                    wanted: visible
                }

                Later {
                    id: meeting

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
                    wanted: visible
                }
            }
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
            pages.children[pages.currentIndex].forceActiveFocus()
        }

        target: toast.item
    }
}
