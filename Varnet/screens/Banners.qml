import QtQuick
import QtQuick.Layouts
import Varnet

// What went wrong and what is being worked on, above the content.
ColumnLayout {
    id: root

    required property AppCommands commands
    required property ErrorBanner banner
    required property WorkStatus work

    spacing: 0

    Banner {
        Layout.fillWidth: true
        Layout.leftMargin: 4 * Theme.unit
        Layout.rightMargin: 4 * Theme.unit
        Layout.topMargin: 4 * Theme.unit
        action: qsTr("Dismiss")
        message: root.banner.message
        visible: message !== ""
        onTriggered: root.banner.dismiss()
    }

    Banner {
        Layout.fillWidth: true
        Layout.leftMargin: 4 * Theme.unit
        Layout.rightMargin: 4 * Theme.unit
        Layout.topMargin: 4 * Theme.unit
        action: qsTr("Retry saving")
        message: root.banner.saveMessage
        tone: 1
        visible: message !== ""
        onTriggered: root.banner.retrySaving()
    }

    WorkStrip {
        Layout.fillWidth: true
        Layout.leftMargin: 4 * Theme.unit
        Layout.rightMargin: 4 * Theme.unit
        Layout.topMargin: 4 * Theme.unit
        commands: root.commands
        visible: root.work.showing
        work: root.work
    }
}
