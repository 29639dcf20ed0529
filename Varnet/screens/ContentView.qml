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
            Layout.preferredWidth: implicitWidth
            commands: root.frame.commands
            router: root.frame.router
            sidebar: root.frame.sidebar
        }

        Rectangle {
            Layout.fillHeight: true
            color: Theme.line
            implicitWidth: 1
        }

        ColumnLayout {
            spacing: 0

            Banners {
                Layout.fillHeight: false
                Layout.fillWidth: true
                banner: root.frame.banner
                commands: root.frame.commands
                work: root.frame.work
            }

            StackLayout {
                id: pages

                currentIndex: root.frame.router.page

                LibraryScreen {
                    commands: root.frame.commands
                    focus: visible
                    library: root.frame.library
                    router: root.frame.router
                }

                DeletedScreen {
                    commands: root.frame.commands
                    deleted: root.frame.deleted
                    focus: visible
                }

                MeetingScreen {
                    commands: root.frame.commands
                    focus: visible
                    page: root.frame.meetingPage
                    playback: root.frame.playback
                    router: root.frame.router
                }
            }
        }
    }

    Toast {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 6 * Theme.unit
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.horizontalCenterOffset: sidebar.width / 2
        toast: root.frame.toast
        width: Math.min(implicitWidth, parent.width - sidebar.width - 12 * Theme.unit)
        onFocusLeft: pages.children[pages.currentIndex].forceActiveFocus()
        onUndo: root.frame.commands.undoDelete()
    }
}
