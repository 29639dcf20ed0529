import QtQuick
import QtQuick.Layouts
import Varnet

// Says for a while what was deleted and offers to undo it. It takes no focus, and its time stands still under the
// pointer and while its button has the focus.
Rectangle {
    id: root

    required property AppCommands commands
    required property UndoToast toast

    signal focusLeft // its button had the focus when it went

    Accessible.description: qsTr("Ctrl+Z undoes it")
    Accessible.name: toast.text
    Accessible.role: Accessible.AlertMessage
    color: Theme.text // the other way round than the page, which it lies over
    implicitHeight: row.implicitHeight + 4 * Theme.unit
    implicitWidth: row.implicitWidth + 6 * Theme.unit
    opacity: toast.showing ? 1 : 0
    radius: Theme.cardRadius
    visible: opacity > 0

    Behavior on opacity {
        NumberAnimation { duration: Theme.motion }
    }

    Binding {
        property: "held"
        target: root.toast
        value: hover.hovered || button.hovered || button.activeFocus
    }

    Connections {
        function onChanged() {
            if (!root.toast.showing && button.activeFocus)
                root.focusLeft()
        }

        target: root.toast
    }

    HoverHandler {
        id: hover
    }

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: 4 * Theme.unit
        anchors.rightMargin: 2 * Theme.unit
        spacing: 4 * Theme.unit

        BareText {
            Layout.fillWidth: true
            color: Theme.surface
            text: root.toast.text
        }

        PlainButton {
            id: button

            objectName: "undoDelete"
            ring: Theme.surface
            text: qsTr("Undo")
            onClicked: root.commands.undoDelete()
        }
    }
}
