import QtQuick
import QtQuick.Controls.Basic
import Varnet

// Asks for the name of a speaker. Enter or leaving keeps it, Escape the former one.
Popover {
    id: root

    required property MeetingPage page
    property string label
    property string began

    function ask(label, speaker, at) {
        root.label = label
        began = speaker
        field.text = speaker
        x = at.x
        y = at.y
        open()
        field.selectAll()
    }

    closePolicy: Popup.CloseOnPressOutside
    title: qsTr("Name of %1").arg(label)
    width: 15 * Theme.body.lineHeight

    onAboutToHide: {
        if (field.text === began)
            return
        const name = field.text
        field.text = began
        page.nameSpeaker(label, name)
    }

    Connections {
        function onAboutToLeave() {
            root.close()
        }

        target: root.page
    }

    contentItem: Column {
        spacing: 2 * Theme.unit

        BareText {
            text: root.title
            type: Theme.emphasis
            width: parent.width
        }

        TextField {
            id: field

            Accessible.description: hint.text
            Accessible.name: root.title
            color: Theme.text
            focus: true
            font: Theme.body.font
            padding: 2 * Theme.unit
            placeholderText: root.label
            placeholderTextColor: Theme.faint
            selectByMouse: true
            selectedTextColor: Theme.text
            selectionColor: Theme.selection
            width: parent.width

            Keys.onEscapePressed: {
                text = root.began
                root.close()
            }
            Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
            onAccepted: root.close()

            background: Rectangle {
                border.color: field.activeFocus ? Theme.accent : Theme.line
                border.width: field.activeFocus ? 2 : 1
                color: Theme.surface
                radius: Theme.controlRadius
            }
        }

        BareText {
            id: hint

            color: Theme.secondary
            text: qsTr("For every turn of this speaker. Without a name it is “%1” again.").arg(root.label)
            type: Theme.caption
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
}
