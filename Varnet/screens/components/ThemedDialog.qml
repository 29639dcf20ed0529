import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Varnet

// The frame of what comes up over the window: a title, a button that closes it, and the body, which is made anew each
// time it opens. The button and Escape emit `dismissed`; it closes when its `visible` says so.
Dialog {
    id: root

    default property Component body
    property bool closable: true // has the button; a question has answers instead
    property int preferredHeight: 0 // 0 for that of the body; never more than the window has
    property int preferredWidth: 26 * Theme.body.lineHeight
    property string subtitle

    signal dismissed

    anchors.centerIn: T.Overlay.overlay
    closePolicy: Popup.NoAutoClose
    focus: true
    height: Math.min(preferredHeight || implicitHeight, T.Overlay.overlay ? T.Overlay.overlay.height - 12 * Theme.unit : 0)
    modal: true
    padding: 1 // the outline
    width: Math.min(preferredWidth, T.Overlay.overlay ? T.Overlay.overlay.width - 16 * Theme.unit : 0)

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
    contentItem: Loader {
        active: root.visible
        focus: true

        Keys.onEscapePressed: root.dismissed()

        sourceComponent: ColumnLayout {
            spacing: 0

            RowLayout {
                Layout.bottomMargin: (root.closable ? 3 : 2) * Theme.unit
                Layout.leftMargin: 6 * Theme.unit
                Layout.rightMargin: (root.closable ? 4 : 6) * Theme.unit
                Layout.topMargin: (root.closable ? 4 : 6) * Theme.unit

                ColumnLayout {
                    spacing: 0

                    ThemedText {
                        Accessible.role: Accessible.Heading
                        Layout.fillWidth: true
                        text: root.title
                        type: Theme.heading
                        wrapMode: Text.Wrap
                    }

                    ThemedText {
                        Layout.fillWidth: true
                        color: Theme.secondary
                        horizontalAlignment: Text.AlignLeft
                        text: root.subtitle
                        visible: text !== ""
                    }
                }

                IconButton {
                    Layout.alignment: Qt.AlignTop
                    symbol: "close"
                    text: qsTr("Close")
                    visible: root.closable
                    onClicked: root.dismissed()
                }
            }

            Rectangle {
                Layout.fillWidth: true
                color: Theme.line
                implicitHeight: 1
                visible: root.closable
            }

            Loader {
                Layout.fillHeight: true
                Layout.fillWidth: true
                focus: true
                sourceComponent: root.body
            }
        }
    }
}
