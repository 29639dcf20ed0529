import QtQuick
import QtQuick.Layouts
import Varnet

// What there is and what can be begun. It scrolls where large words leave too little room.
ScrollArea {
    id: root

    required property MainWindow frame
    readonly property AppCommands commands: frame.commands

    contentHeight: content.height + 6 * Theme.unit
    interactive: contentHeight > height

    ColumnLayout {
        id: content

        height: Math.max(implicitHeight, root.height - 6 * Theme.unit)
        spacing: Theme.unit
        width: root.width - 6 * Theme.unit
        x: 3 * Theme.unit
        y: 3 * Theme.unit

        RowLayout {
            Layout.bottomMargin: 4 * Theme.unit
            Layout.leftMargin: Theme.unit
            Layout.topMargin: 2 * Theme.unit
            spacing: 2 * Theme.unit

            BrandMark {}

            ThemedText {
                Layout.fillWidth: true
                text: Qt.application.displayName
                type: Theme.heading
            }

            MainMenuButton {
                frame: root.frame
            }
        }

        PrimaryButton {
            Layout.bottomMargin: 3 * Theme.unit
            Layout.fillWidth: true
            detail: root.frame.sidebar.elapsed
            enabled: root.commands.recordEnabled
            ground: root.commands.stops ? Theme.rec : Theme.accent
            ink: root.commands.stops ? Theme.onRec : Theme.onAccent
            symbol: root.commands.stops ? "stop" : "record"
            text: root.commands.recordTitle
            onClicked: root.commands.toggleRecording()
        }

        SidebarItem {
            Layout.fillWidth: true
            current: root.frame.router.showingLibrary
            detail: root.frame.sidebar.meetingCount
            symbol: "meetings"
            text: qsTr("All Meetings")
            onClicked: root.commands.showLibrary()
        }

        SidebarItem {
            Layout.fillWidth: true
            current: root.frame.router.showingDeleted
            detail: root.frame.sidebar.deletedCount
            symbol: "deleted"
            text: qsTr("Recently Deleted")
            onClicked: root.commands.showDeleted()
        }

        Item {
            Layout.fillHeight: true
        }

        EngineLine {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.unit
            Layout.rightMargin: Theme.unit
            engine: root.frame.sidebar.speech
            name: qsTr("Speech engine")
        }

        EngineLine {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.unit
            Layout.rightMargin: Theme.unit
            engine: root.frame.sidebar.notes
            name: qsTr("Notes engine")
        }

        SidebarItem {
            Layout.fillWidth: true
            Layout.topMargin: 2 * Theme.unit
            symbol: "settings"
            text: qsTr("Settings")
            onClicked: root.commands.showSettings()
        }
    }
}
