import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// What the chosen version holds.
ColumnLayout {
    id: root

    required property VersionHistory history

    spacing: 0

    TabBar {
        id: tabs

        Accessible.name: qsTr("Content of this version")
        Layout.fillWidth: true
        background: Item {}
        spacing: Theme.unit

        ThemedTab {
            id: transcript

            text: qsTr("Transcript")
            width: Math.min(implicitWidth, root.width / 3)
        }

        ThemedTab {
            text: qsTr("Personal notes")
            width: Math.min(implicitWidth, (root.width - transcript.width) / 2 - Theme.unit)
        }

        ThemedTab {
            text: qsTr("Generated notes")
            width: Math.min(implicitWidth, (root.width - transcript.width) / 2 - Theme.unit)
        }
    }

    Rectangle {
        Layout.fillWidth: true
        color: Theme.line
        implicitHeight: 1
    }

    StackLayout {
        Layout.fillHeight: true
        Layout.fillWidth: true
        currentIndex: tabs.currentIndex

        ListView {
            id: turns

            Accessible.name: qsTr("Transcript of this version")
            Accessible.role: Accessible.List
            activeFocusOnTab: count > 0
            bottomMargin: 4 * Theme.unit
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            highlightMoveDuration: 0
            model: root.history.turns
            topMargin: 2 * Theme.unit

            ScrollBar.vertical: ThemedScrollBar { policy: ScrollBar.AlwaysOn }
            delegate: VersionTurn {
                focused: ListView.isCurrentItem && turns.activeFocus
                width: ListView.view.width - 3 * Theme.unit
            }

            NothingHere {
                text: qsTr("This version has no transcript.")
                visible: turns.count === 0
            }
        }

        VersionWords {
            name: qsTr("Personal notes of this version")
            nothing: qsTr("This version has no personal notes.")
            text: root.history.notesText
        }

        VersionWords {
            name: qsTr("Generated notes of this version")
            nothing: qsTr("This version has no generated notes.")
            text: root.history.draftText
        }
    }
}
