import QtQuick
import QtQuick.Layouts
import Varnet

// What went wrong and what is being worked on, above the content.
ColumnLayout {
    id: root

    required property AppCommands commands
    required property ErrorBanner banner
    required property WorkStatus work
    readonly property int longest: 240 * Theme.unit // as the rows of the library

    spacing: 0

    Banner {
        Layout.alignment: Qt.AlignHCenter
        Layout.fillWidth: true
        Layout.leftMargin: 4 * Theme.unit
        Layout.maximumWidth: root.longest
        Layout.rightMargin: 4 * Theme.unit
        Layout.topMargin: 4 * Theme.unit
        action: qsTr("Dismiss")
        message: root.banner.message
        visible: message !== ""
        onTriggered: root.banner.dismiss()
    }

    Banner {
        Layout.alignment: Qt.AlignHCenter
        Layout.fillWidth: true
        Layout.leftMargin: 4 * Theme.unit
        Layout.maximumWidth: root.longest
        Layout.rightMargin: 4 * Theme.unit
        Layout.topMargin: 4 * Theme.unit
        action: qsTr("Retry saving")
        message: root.banner.saveMessage
        tone: 1
        visible: message !== ""
        onTriggered: root.banner.retrySaving()
    }

    WorkStrip {
        Layout.alignment: Qt.AlignHCenter
        Layout.fillWidth: true
        Layout.leftMargin: 4 * Theme.unit
        Layout.maximumWidth: root.longest
        Layout.rightMargin: 4 * Theme.unit
        Layout.topMargin: 4 * Theme.unit
        commands: root.commands
        visible: root.work.showing
        work: root.work
    }
}
