import QtQuick
import QtQuick.Layouts
import Varnet

// The draft is being written: how far it is, what is kept meanwhile, and a way to call it off.
Rectangle {
    id: root

    required property AppCommands commands
    required property DraftModel draft

    border.color: Theme.line
    border.width: 1
    color: Theme.raised
    implicitHeight: row.implicitHeight + 6 * Theme.unit
    radius: Theme.cardRadius

    GridLayout {
        id: row

        anchors.left: parent.left
        anchors.margins: 3 * Theme.unit
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        columnSpacing: 3 * Theme.unit
        columns: width < cancel.implicitWidth + 10 * Theme.body.lineHeight ? 1 : 2 // with large words the button goes below
        rowSpacing: 2 * Theme.unit

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 0

            ThemedText {
                Accessible.name: text
                Accessible.role: Accessible.StaticText
                Layout.fillWidth: true
                text: root.commands.notesProgress
                type: Theme.emphasis
                wrapMode: Text.Wrap
            }

            ThemedText {
                Accessible.name: text
                Accessible.role: Accessible.StaticText
                Layout.fillWidth: true
                color: Theme.secondary
                text: root.draft.present ? qsTr("The draft below is kept until the new one is there.") : qsTr("You can go on working. The draft will stand here.")
                wrapMode: Text.Wrap
            }
        }

        PlainButton {
            id: cancel

            Layout.alignment: Qt.AlignRight
            text: qsTr("Cancel")
            onClicked: root.commands.cancelNotes()
        }
    }
}
