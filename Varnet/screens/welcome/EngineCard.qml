import QtQuick
import QtQuick.Layouts
import Varnet

// One engine: its state in words, and what it does, or what is wrong with it.
Rectangle {
    id: root

    required property string name
    required property engineLine engine
    required property string purpose

    Accessible.description: words.text
    Accessible.name: name + ": " + engine.words
    Accessible.role: Accessible.StaticText
    border.color: Theme.line
    border.width: 1
    color: Theme.surface
    implicitHeight: column.implicitHeight + 8 * Theme.unit
    radius: Theme.cardRadius

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: 4 * Theme.unit
        spacing: Theme.unit

        RowLayout {
            spacing: 2 * Theme.unit

            StatusDot {
                tone: root.engine.tone
            }

            BareText {
                Layout.fillWidth: true
                text: root.name
                type: Theme.emphasis
            }

            BareText {
                color: Theme.secondary
                text: root.engine.words
            }
        }

        BareText {
            id: words

            Layout.fillWidth: true
            Layout.leftMargin: Theme.symbol / 2 + 2 * Theme.unit // below the name
            color: Theme.secondary
            text: root.engine.detail || root.purpose
            wrapMode: Text.Wrap
        }
    }
}
