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
    required property MainWindow frame
    required property MeetingAppDelegate delegate
    required property MeetingPage meetingPage
    required property SidebarState sidebar

    color: Theme.surface
    font: Theme.body.font
    minimumHeight: 600
    minimumWidth: 900
    palette.base: Theme.surface
    palette.button: Theme.raised
    palette.highlight: Theme.selection
    palette.text: Theme.text
    palette.window: Theme.surface
    palette.windowText: Theme.text
    title: Qt.application.displayName

    Shortcut {
        context: Qt.ApplicationShortcut
        enabled: root.commands.recordEnabled
        sequence: "Ctrl+N"
        onActivated: root.commands.toggleRecording()
    }

    Shortcut {
        context: Qt.ApplicationShortcut
        sequence: "Ctrl+1"
        onActivated: root.commands.showLibrary()
    }

    Shortcut {
        enabled: root.router.showingMeeting
        sequences: [StandardKey.Cancel]
        onActivated: root.commands.showLibrary()
    }

    Shortcut {
        context: Qt.ApplicationShortcut
        sequences: [StandardKey.Quit]
        onActivated: root.delegate.quit()
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Sidebar {
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
            }

            StackLayout {
                currentIndex: root.router.showingMeeting ? 1 : 0

                LibraryScreen {
                    commands: root.commands
                    focus: visible
                    library: root.library
                }

                MeetingScreen {
                    commands: root.commands
                    focus: visible
                    page: root.meetingPage
                }
            }
        }
    }

    Ask {
        explanation: qsTr("The latest edits are still in this app's memory. Make storage available and retry saving. The app will stay open if saving still fails.")
        firstAnswer: qsTr("Keep app open")
        question: qsTr("Some meeting changes have not been saved")
        secondAnswer: qsTr("Retry saving and quit")
        visible: root.delegate.askingToSave
        onDismissed: root.delegate.keepOpen()
        onFirst: root.delegate.keepOpen()
        onSecond: root.delegate.retrySavingAndQuit()
    }

    Ask {
        explanation: root.frame.closeNotice
        firstAnswer: qsTr("Quit")
        question: qsTr("%1 keeps running without its window").arg(Qt.application.displayName)
        secondAnswer: qsTr("Close the window")
        visible: root.frame.askingToClose
        onDismissed: root.frame.cancelClosing()
        onFirst: root.delegate.quit()
        onSecond: root.frame.close()
    }
}
