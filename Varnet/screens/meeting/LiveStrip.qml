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
        readonly property real longest: below ? root.width : 45 * Theme.unit

        anchors.left: parent.left
        anchors.margins: 4 * Theme.unit
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        columnSpacing: 6 * Theme.unit
        rowSpacing: Theme.unit

        LevelMeter {
            id: microphone

            level: root.visible ? root.page.microphoneLevel : 0 // a page that is not up asks for no frames
            longest: row.longest
            name: qsTr("Microphone")
            nameWidth: row.below && call.visible ? call.ownNameWidth : 0
            symbol: "microphone"
        }

        LevelMeter {
            id: call

            Layout.column: 1 - row.below
            Layout.row: row.below
            level: root.visible ? root.page.callLevel : 0
            longest: row.longest
            name: qsTr("Call")
            nameWidth: row.below ? microphone.ownNameWidth : 0
            symbol: "call"
            visible: root.page.capturingCall
        }

        Item {
            Layout.column: 2
            Layout.fillWidth: true
            Layout.row: 0
            visible: row.below === 0
        }

        StatusDot {
            Layout.column: 3
            Layout.row: 0
            Layout.rowSpan: 1 + row.below
            tone: 0
        }

        ThemedText {
            Accessible.name: qsTr("Recording for %1").arg(root.page.clock)
            Layout.column: 4
            Layout.leftMargin: -4 * Theme.unit
            Layout.row: 0
            Layout.rowSpan: 1 + row.below
            text: root.page.clock
            type: Theme.heading
        }
    }
}
