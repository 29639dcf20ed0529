import QtQuick
import QtQuick.Layouts
import Varnet

// What is being heard: a meter for each track and the running time.
Rectangle {
    id: root

    required property MeetingPage page

    border.color: Theme.line
    border.width: 1
    color: Theme.raised
    implicitHeight: row.implicitHeight + 6 * Theme.unit
    radius: Theme.cardRadius

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: 4 * Theme.unit
        anchors.rightMargin: 4 * Theme.unit
        spacing: 6 * Theme.unit

        LevelMeter {
            level: root.page.microphoneLevel
            name: qsTr("Microphone")
            symbol: "microphone"
        }

        LevelMeter {
            level: root.page.callLevel
            name: qsTr("Call")
            symbol: "call"
            visible: root.page.capturingCall
        }

        Item {
            Layout.fillWidth: true
        }

        StatusDot {
            tone: 0
        }

        ThemedText {
            Accessible.name: qsTr("Recording for %1").arg(root.page.clock)
            Layout.leftMargin: -4 * Theme.unit
            text: root.page.clock
            type: Theme.heading
        }
    }
}
