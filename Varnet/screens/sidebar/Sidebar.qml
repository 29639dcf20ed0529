import QtQuick
import QtQuick.Layouts
import Varnet

// What there is and what can be begun.
Rectangle {
    id: root

    required property AppCommands commands
    required property AppRouter router
    required property SidebarState sidebar

    color: Theme.window
    implicitWidth: 12 * Theme.body.lineHeight // 240; wider with larger words

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 3 * Theme.unit
        spacing: Theme.unit

        RowLayout {
            Layout.bottomMargin: 4 * Theme.unit
            Layout.leftMargin: Theme.unit
            Layout.topMargin: 2 * Theme.unit
            spacing: 2 * Theme.unit

            BrandMark {}

            ThemedText {
                text: Qt.application.displayName
                type: Theme.heading
            }
        }

        PrimaryButton {
            Layout.bottomMargin: 3 * Theme.unit
            Layout.fillWidth: true
            detail: root.sidebar.elapsed
            enabled: root.commands.recordEnabled
            ground: root.commands.stops ? Theme.rec : Theme.accent
            ink: root.commands.stops ? Theme.onRec : Theme.onAccent
            symbol: root.commands.stops ? "stop" : "record"
            text: root.commands.recordTitle
            onClicked: root.commands.toggleRecording()
        }

        SidebarItem {
            Layout.fillWidth: true
            current: root.router.showingLibrary
            detail: root.sidebar.meetingCount
            symbol: "meetings"
            text: qsTr("All Meetings")
            onClicked: root.commands.showLibrary()
        }

        SidebarItem {
            Layout.fillWidth: true
            current: root.router.showingDeleted
            detail: root.sidebar.deletedCount
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
            engine: root.sidebar.speech
            name: qsTr("Speech engine")
        }

        EngineLine {
            Layout.bottomMargin: Theme.unit
            Layout.fillWidth: true
            Layout.leftMargin: Theme.unit
            Layout.rightMargin: Theme.unit
            engine: root.sidebar.notes
            name: qsTr("Notes engine")
        }
    }
}
