import QtQuick
import QtQuick.Layouts
import Varnet

// A message across its place, with one thing to do about it. The words can be selected.
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

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: 3 * Theme.unit
        anchors.rightMargin: 2 * Theme.unit
        spacing: 3 * Theme.unit

        Icon {
            Layout.alignment: Qt.AlignVCenter
            color: Theme.tones[root.tone]
            symbol: "warning"
        }

        TextEdit {
            Layout.fillWidth: true
            Accessible.ignored: true
            activeFocusOnTab: false
            color: Theme.text
            font: Theme.body.font
            readOnly: true
            selectByMouse: true
            selectedTextColor: Theme.text
            selectionColor: Theme.selection
            text: root.message
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
        }

        PlainButton {
            text: root.action
            visible: text !== ""
            onClicked: root.triggered()
        }
    }
}
