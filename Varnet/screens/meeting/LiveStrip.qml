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

    GridLayout {
        id: row

        readonly property int below: root.width < 18 * Theme.body.lineHeight ? 1 : 0 // the second meter stands there

        anchors.fill: parent
        anchors.leftMargin: 4 * Theme.unit
        anchors.rightMargin: 4 * Theme.unit
        columnSpacing: 6 * Theme.unit
        rowSpacing: Theme.unit

        LevelMeter {
            Layout.columnSpan: row.below ? 4 : 1
            level: root.page.microphoneLevel
            name: qsTr("Microphone")
            symbol: "microphone"
        }

        LevelMeter {
            Layout.column: 1 - row.below
            Layout.row: row.below
            level: root.page.callLevel
            name: qsTr("Call")
            symbol: "call"
            visible: root.page.capturingCall
        }

        Item {
            Layout.column: 2 - row.below
            Layout.fillWidth: true
            Layout.row: row.below
        }

        StatusDot {
            Layout.column: 3 - row.below
            Layout.row: row.below
            tone: 0
        }

        ThemedText {
            Accessible.name: qsTr("Recording for %1").arg(root.page.clock)
            Layout.column: 4 - row.below
            Layout.leftMargin: -4 * Theme.unit
            Layout.row: row.below
            text: root.page.clock
            type: Theme.heading
        }
    }
}
