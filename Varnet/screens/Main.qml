import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// The main window.
ApplicationWindow {
    id: root

    required property AppCommands commands
    required property AppRouter router
    required property ErrorBanner banner
    required property LibraryModel library
    required property DeletedModel deleted
    required property MainWindow frame
    required property MeetingAppDelegate delegate
    required property MeetingPage meetingPage
    required property AudioPlayback playback
    required property SidebarState sidebar
    required property UndoToast toast
    required property VersionHistory history
    required property WorkStatus work

    color: Theme.surface
    font: Theme.body.font
    minimumHeight: 600
    minimumWidth: 900
    palette.base: Theme.surface
    palette.button: Theme.raised
    palette.buttonText: Theme.text
    palette.highlight: Theme.selection
    palette.highlightedText: Theme.text
    palette.light: Theme.surface
    palette.text: Theme.text
    palette.toolTipBase: Theme.raised
    palette.toolTipText: Theme.text
    palette.window: Theme.surface
    palette.windowText: Theme.text
    title: Qt.application.displayName

    Shortcuts {
        commands: root.commands
        delegate: root.delegate
        router: root.router
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Sidebar {
            id: sidebar

            Layout.fillHeight: true
            Layout.preferredWidth: implicitWidth
            commands: root.commands
            router: root.router
            sidebar: root.sidebar
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
                banner: root.banner
                commands: root.commands
                work: root.work
            }

            StackLayout {
                id: pages

                currentIndex: root.router.page

                LibraryScreen {
                    commands: root.commands
                    focus: visible
                    library: root.library
                    router: root.router
                }

                DeletedScreen {
                    commands: root.commands
                    deleted: root.deleted
                    focus: visible
                }

                MeetingScreen {
                    commands: root.commands
                    focus: visible
                    page: root.meetingPage
                    playback: root.playback
                    router: root.router
                }
            }
        }
    }

    Toast {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 6 * Theme.unit
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.horizontalCenterOffset: sidebar.width / 2
        toast: root.toast
        width: Math.min(implicitWidth, parent.width - sidebar.width - 12 * Theme.unit)
        onFocusLeft: pages.children[pages.currentIndex].forceActiveFocus()
        onUndo: root.commands.undoDelete()
    }

    HistoryDialog {
        commands: root.commands
        history: root.history
        visible: root.router.historyOpen
    }

    Loader {
        active: root.router.exporting
        sourceComponent: ExportDialog {
            commands: root.commands
            parentWindow: root
            router: root.router
        }
    }

    ImportPicker {
        commands: root.commands
        router: root.router
    }

    DropZone {
        anchors.fill: parent
        commands: root.commands
    }

    Questions {
        commands: root.commands
        delegate: root.delegate
        frame: root.frame
        router: root.router
    }
}
