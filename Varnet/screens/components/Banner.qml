import QtQuick
import QtQuick.Layouts
import Varnet

// A message across its place, with one thing to do about it, below it where there is little room. The words can be
// selected.
Rectangle {
    id: root

    required property string message
    property string action
    property int tone: 0

    signal triggered

    Accessible.name: message
    Accessible.role: Accessible.AlertMessage
    border.color: Theme.tones[tone]
    border.width: 1
    color: Theme.raised
    implicitHeight: row.implicitHeight + 4 * Theme.unit
    radius: Theme.cardRadius

    GridLayout {
        id: row

        readonly property bool narrow: button.visible && root.width < button.implicitWidth + 18 * Theme.body.lineHeight

        anchors.left: parent.left
        anchors.leftMargin: 3 * Theme.unit
        anchors.right: parent.right
        anchors.rightMargin: 2 * Theme.unit
        anchors.verticalCenter: parent.verticalCenter
        columnSpacing: 3 * Theme.unit
        columns: 3
        rowSpacing: 2 * Theme.unit

        Icon {
            Layout.alignment: row.narrow ? Qt.AlignTop : Qt.AlignVCenter
            Layout.topMargin: row.narrow ? (Theme.body.lineHeight - height) / 2 : 0
            color: Theme.tones[root.tone]
            symbol: "warning"
        }

        SelectableText {
            Accessible.ignored: true
            Layout.columnSpan: row.narrow ? 2 : 1
            Layout.fillWidth: true
            activeFocusOnTab: false
            text: root.message
        }

        PlainButton {
            id: button

            Layout.alignment: Qt.AlignRight
            Layout.column: 2
            Layout.row: row.narrow ? 1 : 0
            text: root.action
            visible: text !== ""
            onClicked: root.triggered()
        }
    }
}
