import QtQuick
import Varnet

// How many points were removed, and on demand why each of them was.
Column {
    id: root

    required property DraftModel draft
    property bool open: false

    spacing: Theme.unit

    Connections {
        function onModelReset() {
            root.open = false
        }

        target: root.draft
    }

    Flow {
        spacing: 2 * Theme.unit
        width: root.width

        ThemedText {
            color: Theme.secondary
            text: root.draft.removedText
            width: Math.min(implicitWidth, root.width)
            wrapMode: Text.Wrap
        }

        ThemedButton {
            id: why

            Accessible.checkable: true
            Accessible.checked: root.open
            Accessible.description: root.open ? qsTr("The reasons are shown below.") : qsTr("Shows the reasons.")
            Accessible.name: qsTr("Why were points removed?")
            hoverEnabled: true
            padding: 0
            text: qsTr("Why?")
            visible: root.draft.removedReasons.length > 0
            onClicked: root.open = !root.open

            background: FocusRing {
                control: why
            }
            contentItem: Row {
                spacing: Theme.unit

                BareText {
                    color: why.hovered || why.visualFocus ? Theme.text : Theme.accent
                    text: why.text
                }

                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.accent
                    sourceSize: Qt.size(0.75 * Theme.symbol, 0.75 * Theme.symbol)
                    rotation: root.open ? 90 : -90
                    symbol: "back"
                }
            }
        }
    }

    Repeater {
        model: root.open ? root.draft.removedReasons : []

        ThemedText {
            required property string modelData

            color: Theme.secondary
            leftPadding: 3 * Theme.unit
            text: modelData
            type: Theme.caption
            width: root.width
            wrapMode: Text.Wrap
        }
    }
}
