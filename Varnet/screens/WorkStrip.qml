import QtQuick
import QtQuick.Layouts
import Varnet

// Saved audio on its way to a transcript, or notes that are being written: what is being done, how far it is, what waits,
// and a way to call it off.
Rectangle {
    id: root

    required property AppCommands commands
    required property WorkStatus work

    border.color: Theme.line
    border.width: 1
    color: Theme.raised
    implicitHeight: row.implicitHeight + 4 * Theme.unit
    radius: Theme.cardRadius

    GridLayout {
        id: row

        anchors.left: parent.left
        anchors.leftMargin: 3 * Theme.unit
        anchors.right: parent.right
        anchors.rightMargin: 2 * Theme.unit
        anchors.verticalCenter: parent.verticalCenter
        columnSpacing: 3 * Theme.unit
        columns: width < buttons.implicitWidth + 12 * Theme.body.lineHeight ? 1 : 2 // with large words the buttons go below
        rowSpacing: 2 * Theme.unit

        ColumnLayout {
            Layout.fillWidth: true
            spacing: Theme.unit

            GridLayout {
                columnSpacing: 3 * Theme.unit
                columns: row.columns === 1 ? 1 : 3
                rowSpacing: 0

                ThemedText {
                    Layout.fillWidth: true
                    text: root.work.text
                }

                ThemedText {
                    Layout.maximumWidth: parent.width
                    color: Theme.secondary
                    text: root.work.waitingText
                    type: Theme.caption
                    visible: text !== ""
                }

                BareText {
                    Layout.maximumWidth: parent.width
                    text: root.work.progress
                    type: Theme.caption
                    visible: text !== ""
                }
            }

            WorkBar {
                Accessible.description: root.work.progress || qsTr("Under way")
                Accessible.name: root.work.text
                Layout.fillWidth: true
                indeterminate: !root.work.measured
                value: root.work.share
                visible: root.work.running
            }
        }

        RowLayout {
            id: buttons

            Layout.alignment: Qt.AlignRight
            spacing: 2 * Theme.unit

            PlainButton {
                enabled: !root.work.cancelling
                text: qsTr("Cancel")
                visible: root.work.running
                onClicked: root.commands.cancelWork()
            }

            PlainButton {
                text: root.work.running ? qsTr("Cancel all") : qsTr("Cancel")
                visible: root.work.filesWait
                onClicked: root.commands.cancelAllWork()
            }
        }
    }
}
