import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// The recognised words of a turn that was corrected, and the way back to them.
Popover {
    id: root

    required property MeetingPage page
    property string turn

    function show(turn, recognised, at) {
        root.turn = turn
        words.text = recognised
        x = at.x
        y = at.y
        open()
    }

    title: qsTr("Recognised words")
    width: 22 * Theme.body.lineHeight

    Connections {
        function onAboutToLeave() {
            root.close()
        }

        target: root.page
    }

    contentItem: ColumnLayout {
        spacing: 2 * Theme.unit

        BareText {
            Layout.fillWidth: true
            text: root.title
            type: Theme.emphasis
        }

        ThemedText {
            id: words

            Layout.fillWidth: true
            Layout.maximumHeight: 10 * Theme.body.lineHeight
            color: Theme.secondary
            wrapMode: Text.Wrap
        }

        PlainButton {
            Layout.alignment: Qt.AlignRight
            Layout.topMargin: Theme.unit
            focus: true
            text: qsTr("Set back to the recognised words")
            onClicked: {
                root.close()
                root.page.setBack(root.turn)
            }
        }
    }
}
