import QtQuick
import QtQuick.Layouts
import Varnet

// A question over the window with two answers. It stays until one is given or Escape dismisses it, or a third button
// where no answer leaves all as it is. The second is the usual one; a `grave` one is marked and has to be looked for.
ThemedDialog {
    id: root

    required property string question
    required property string explanation
    required property string firstAnswer
    required property string secondAnswer
    property bool cancellable: false
    property bool grave: false

    signal first
    signal second

    closable: false
    title: question

    ColumnLayout {
        spacing: 0

        Component.onCompleted: (root.grave ? firstButton : secondButton).forceActiveFocus(Qt.TabFocusReason)

        ThemedText {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            Layout.fillWidth: true
            Layout.leftMargin: 6 * Theme.unit
            Layout.rightMargin: 6 * Theme.unit
            color: Theme.secondary
            text: root.explanation
            wrapMode: Text.Wrap
        }

        RowLayout {
            Layout.bottomMargin: 6 * Theme.unit
            Layout.leftMargin: 6 * Theme.unit
            Layout.rightMargin: 6 * Theme.unit
            Layout.topMargin: 5 * Theme.unit
            spacing: 2 * Theme.unit

            PlainButton {
                Layout.fillHeight: true
                text: qsTr("Cancel")
                visible: root.cancellable
                onClicked: root.dismissed()
            }

            Item {
                Layout.fillWidth: true
            }

            PlainButton {
                id: firstButton

                Layout.fillHeight: true
                text: root.firstAnswer
                onClicked: root.first()
            }

            PrimaryButton {
                id: secondButton

                ground: root.grave ? Theme.rec : Theme.accent
                ink: root.grave ? Theme.onRec : Theme.onAccent
                text: root.secondAnswer
                onClicked: root.second()
            }
        }
    }
}
