import QtQuick
import QtQuick.Layouts
import Varnet

// One engine with its state in words, and what is wrong with it.
Rectangle {
    id: root

    required property string name
    required property var engine

    Accessible.description: engine.detail
    Accessible.name: name + ": " + engine.words
    Accessible.role: Accessible.StaticText
    border.color: Theme.line
    border.width: 1
    color: Theme.surface
    implicitHeight: column.implicitHeight + 6 * Theme.unit
    radius: Theme.cardRadius

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: 3 * Theme.unit
        spacing: Theme.unit

        RowLayout {
            spacing: 2 * Theme.unit

            StatusDot {
                tone: root.engine.tone
            }

            ThemedText {
                Accessible.ignored: true
                Layout.fillWidth: true
                text: root.name
                type: Theme.emphasis
            }

            ThemedText {
                Accessible.ignored: true
                color: Theme.secondary
                text: root.engine.words
            }
        }

        ThemedText {
            Accessible.ignored: true
            Layout.fillWidth: true
            color: Theme.secondary
            text: root.engine.detail
            visible: text !== ""
            wrapMode: Text.Wrap
        }
    }
}
