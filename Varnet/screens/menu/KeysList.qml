import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// What can be done where, and with which keys.
ReadingList {
    id: root

    Accessible.name: qsTr("Keyboard shortcuts")
    activeFocusOnTab: true
    bottomMargin: 4 * Theme.unit
    model: ShortcutKeys.rows

    Keys.onPressed: event => event.accepted = root.stepped(event.key)

    ScrollBar.vertical: ThemedScrollBar { policy: ScrollBar.AlwaysOn }
    delegate: Item {
        id: row

        required property int index
        required property var modelData
        readonly property bool heading: modelData[1] === ""

        Accessible.focused: ListView.isCurrentItem && root.activeFocus
        Accessible.name: heading ? modelData[0] : modelData[0] + ", " + modelData[1]
        Accessible.role: heading ? Accessible.Heading : Accessible.ListItem
        implicitHeight: words.implicitHeight + (heading ? 5 : 2) * Theme.unit
        width: ListView.view.width - 5 * Theme.unit

        Rectangle {
            anchors.fill: parent
            anchors.topMargin: row.heading ? 3 * Theme.unit : 0
            border.color: Theme.accent
            border.width: 1
            color: "transparent"
            radius: Theme.controlRadius
            visible: row.ListView.isCurrentItem && root.activeFocus
        }

        RowLayout {
            id: words

            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.unit
            anchors.left: parent.left
            anchors.leftMargin: 4 * Theme.unit
            anchors.right: parent.right
            anchors.rightMargin: 4 * Theme.unit
            spacing: 4 * Theme.unit

            BareText {
                Layout.fillWidth: true
                text: row.modelData[0]
                type: row.heading ? Theme.emphasis : Theme.body
                wrapMode: Text.Wrap
            }

            BareText {
                color: Theme.secondary
                text: row.modelData[1]
                visible: text !== ""
            }
        }
    }
}
