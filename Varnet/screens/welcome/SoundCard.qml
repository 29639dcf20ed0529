import QtQuick
import QtQuick.Layouts
import Varnet

// A live meter, and in words whether something is heard. What can be done about that stands below.
Rectangle {
    id: root

    required property SoundCheck check
    required property string name
    required property string symbol
    default property alias actions: row.data

    border.color: check.failed ? Theme.rec : Theme.line
    border.width: 1
    color: Theme.surface
    implicitHeight: column.implicitHeight + 8 * Theme.unit
    radius: Theme.cardRadius

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: 4 * Theme.unit
        spacing: 3 * Theme.unit

        LevelMeter {
            Layout.fillWidth: true
            level: root.check.level
            longest: Infinity
            name: root.name
            symbol: root.symbol
        }

        RowLayout {
            Accessible.name: root.check.words
            Accessible.role: Accessible.StaticText
            spacing: 2 * Theme.unit

            StatusDot {
                Layout.alignment: Qt.AlignTop
                Layout.leftMargin: width / 2 // below the middle of the symbol
                Layout.rightMargin: width / 2
                Layout.topMargin: (Theme.body.lineHeight - height) / 2
                tone: root.check.tone
            }

            BareText {
                Layout.fillWidth: true
                text: root.check.words
                wrapMode: Text.Wrap
            }
        }

        Row {
            id: row

            spacing: 2 * Theme.unit
            visible: root.check.failed || children.length > 1

            PlainButton {
                text: qsTr("Try again")
                visible: root.check.failed
                onClicked: root.check.tryAgain()
            }
        }
    }
}
