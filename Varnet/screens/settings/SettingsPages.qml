import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// The body of the settings: the tabs, what went wrong, and the page of the tab that is chosen.
FocusScope {
    id: root

    required property AppCommands commands
    required property SettingsState settings

    function step(by) {
        tabs.currentIndex = (tabs.currentIndex + by + tabs.count) % tabs.count
        tabs.currentItem.forceActiveFocus(Qt.TabFocusReason)
    }

    Component.onCompleted: Qt.callLater(step, 0)
    Keys.onDownPressed: view.scroll(10 * Theme.unit)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp)
            view.scroll((event.key === Qt.Key_PageDown ? 0.8 : -0.8) * view.height)
    }
    Keys.onUpPressed: view.scroll(-10 * Theme.unit)

    Shortcut {
        sequence: "Ctrl+Tab"
        onActivated: root.step(1)
    }

    Shortcut {
        sequence: "Ctrl+Shift+Tab"
        onActivated: root.step(-1)
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        TabBar {
            id: tabs

            Accessible.name: qsTr("Settings")
            Keys.onLeftPressed: root.step(-1)
            Keys.onRightPressed: root.step(1)
            Layout.fillWidth: true
            Layout.leftMargin: 3 * Theme.unit
            Layout.rightMargin: 3 * Theme.unit
            Layout.topMargin: Theme.unit
            background: Item {}
            spacing: Theme.unit
            onCurrentIndexChanged: root.settings.forgetProblem()

            ThemedTab { text: qsTr("General") }
            ThemedTab { text: qsTr("Recording") }
            ThemedTab { text: qsTr("Engines") }
            ThemedTab { text: qsTr("Storage") }
        }

        Rectangle {
            Layout.fillWidth: true
            color: Theme.line
            implicitHeight: 1
            z: -1 // below the ring of a tab
        }

        Banner {
            Layout.fillWidth: true
            Layout.leftMargin: 4 * Theme.unit
            Layout.rightMargin: 4 * Theme.unit
            Layout.topMargin: 4 * Theme.unit
            action: qsTr("Dismiss")
            message: root.settings.problem
            visible: message !== ""
            onTriggered: {
                root.settings.forgetProblem()
                root.step(0)
            }
        }

        SettingsView {
            id: view

            Layout.fillHeight: true
            Layout.fillWidth: true
            page: [general, recording, engines, storage][tabs.currentIndex]
        }
    }

    Component {
        id: general

        GeneralTab { settings: root.settings }
    }

    Component {
        id: recording

        RecordingTab { settings: root.settings }
    }

    Component {
        id: engines

        EnginesTab { settings: root.settings }
    }

    Component {
        id: storage

        StorageTab {
            commands: root.commands
            settings: root.settings
        }
    }
}
