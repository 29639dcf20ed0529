import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Varnet

// A question over the window with two answers. It stays until one is given or Escape dismisses it. The second is the
// usual one; a `grave` one is marked and has to be looked for.
Dialog {
    id: root

    required property string question
    required property string explanation
    required property string firstAnswer
    required property string secondAnswer
    property bool grave: false

    signal first
    signal second
    signal dismissed

    anchors.centerIn: T.Overlay.overlay
    closePolicy: Popup.NoAutoClose
    focus: true
    modal: true
    padding: 6 * Theme.unit
    title: question
    width: Math.min(130 * Theme.unit, T.Overlay.overlay ? T.Overlay.overlay.width - 16 * Theme.unit : 0)

    onOpened: (grave ? firstButton : secondButton).forceActiveFocus(Qt.TabFocusReason)

    T.Overlay.modal: Rectangle {
        color: Qt.alpha(Theme.window, 0.75)
    }
    header: Item {}
    background: Rectangle {
        border.color: Theme.line
        border.width: 1
        color: Theme.surface
        radius: Theme.cardRadius
    }
    contentItem: ColumnLayout {
        spacing: 2 * Theme.unit
        Keys.onEscapePressed: root.dismissed()

        ThemedText {
            Layout.fillWidth: true
            text: root.question
            type: Theme.heading
            wrapMode: Text.Wrap
        }

        ThemedText {
            Layout.fillWidth: true
            color: Theme.secondary
            text: root.explanation
            wrapMode: Text.Wrap
        }

        RowLayout {
            Layout.alignment: Qt.AlignRight
            Layout.topMargin: 3 * Theme.unit
            spacing: 2 * Theme.unit

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
