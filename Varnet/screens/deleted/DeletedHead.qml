import QtQuick
import QtQuick.Layouts
import Varnet

// The name of the page, what can be done with the selected meetings, and how long meetings stay here.
ColumnLayout {
    id: root

    required property DeletedModel deleted
    readonly property bool narrow: width < 26 * Theme.body.lineHeight // the buttons stand below the title

    signal restored

    spacing: (narrow && actions.visible ? 2 : 1) * Theme.unit

    Item {
        Layout.fillWidth: true
        implicitHeight: root.narrow && actions.visible ? title.implicitHeight + 2 * Theme.unit + actions.implicitHeight
                                                       : Math.max(title.implicitHeight, actions.implicitHeight)

        ThemedText {
            id: title

            Accessible.role: Accessible.Heading
            anchors.left: parent.left
            anchors.right: root.narrow ? parent.right : actions.left
            text: qsTr("Recently Deleted")
            type: Theme.title
        }

        // A layout does not place what turns visible while its page is hidden.
        Row {
            id: actions

            spacing: 2 * Theme.unit
            visible: !root.deleted.empty
            x: root.narrow ? 0 : parent.width - width
            y: root.narrow ? title.implicitHeight + 2 * Theme.unit : 0

            PlainButton {
                enabled: root.deleted.selectedIDs.length > 0
                text: root.deleted.eraseText
                onClicked: root.deleted.askToErase()
            }

            PlainButton {
                enabled: root.deleted.selectedIDs.length > 0
                text: root.deleted.restoreText
                onClicked: root.restored()
            }
        }
    }

    ThemedText {
        Layout.fillWidth: true
        color: Theme.secondary
        text: qsTr("Deleted meetings stay in Recently deleted for 30 days, then their audio, transcript and notes are erased from this Mac.")
        wrapMode: Text.Wrap
    }
}
