import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// Words to find in the transcript. Enter and Shift+Enter go through the hits, Escape closes it.
Rectangle {
    id: root

    required property TranscriptFind find

    signal closed // the keyboard goes back to the transcript

    function begin() {
        field.forceActiveFocus(Qt.ShortcutFocusReason)
        field.selectAll()
    }

    function close() {
        find.close()
        closed()
    }

    color: Theme.surface
    implicitHeight: row.implicitHeight + 4 * Theme.unit

    Shortcut {
        enabled: root.visible
        sequences: [StandardKey.FindNext]
        onActivated: root.find.step(1)
    }

    Shortcut {
        enabled: root.visible
        sequences: [StandardKey.FindPrevious]
        onActivated: root.find.step(-1)
    }

    RowLayout {
        id: row

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.unit

        TextField {
            id: field

            Accessible.description: root.find.summary
            Accessible.name: placeholderText
            Accessible.searchEdit: true
            Layout.fillWidth: true
            Layout.maximumWidth: 90 * Theme.unit
            bottomPadding: 1.5 * Theme.unit
            color: Theme.text
            font: Theme.body.font
            leftPadding: 3 * Theme.unit
            maximumLength: 200
            placeholderText: qsTr("Find in this transcript")
            placeholderTextColor: Theme.faint
            rightPadding: 3 * Theme.unit
            selectByMouse: true
            selectedTextColor: Theme.text
            selectionColor: Theme.selection
            text: root.find.query
            topPadding: 1.5 * Theme.unit

            Keys.onEscapePressed: root.close()
            Keys.onPressed: event => {
                event.accepted = event.key === Qt.Key_Return || event.key === Qt.Key_Enter
                if (event.accepted)
                    root.find.step(event.modifiers & Qt.ShiftModifier ? -1 : 1)
            }
            Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
            onTextEdited: root.find.query = text

            background: Rectangle {
                border.color: field.activeFocus ? Theme.accent : Theme.line
                border.width: field.activeFocus ? 2 : 1
                color: Theme.surface
                radius: Theme.controlRadius
            }
        }

        ThemedText {
            Layout.leftMargin: 2 * Theme.unit
            Layout.preferredWidth: Math.max(implicitWidth, 3 * Theme.body.lineHeight)
            color: root.find.query !== "" && root.find.count === 0 ? Theme.amber : Theme.secondary
            text: root.find.summary
        }

        IconButton {
            enabled: root.find.count > 0
            symbol: "up"
            text: qsTr("Previous match")
            onClicked: root.find.step(-1)
        }

        IconButton {
            enabled: root.find.count > 0
            symbol: "down"
            text: qsTr("Next match")
            onClicked: root.find.step(1)
        }

        Item {
            Layout.fillWidth: true
        }

        IconButton {
            symbol: "close"
            text: qsTr("Close")
            onClicked: root.close()
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.line
        height: 1
        width: parent.width
    }
}
