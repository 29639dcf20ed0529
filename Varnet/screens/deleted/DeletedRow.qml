import QtQuick
import QtQuick.Layouts
import Varnet

// One deleted meeting: what it was, when it was deleted and how long it is kept.
Rectangle {
    id: root

    required property string title
    required property string subtitle
    required property string deleted
    required property string erased
    required property bool urgent
    required property bool selected
    required property string spoken
    property bool current: false
    property bool focused: false

    signal chosen(int modifiers)

    Accessible.focused: current && focused
    Accessible.name: spoken
    Accessible.onPressAction: chosen(Qt.NoModifier)
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: selected
    border.color: current && focused ? Theme.accent : Theme.line
    border.width: current && focused || selected && Theme.highContrast ? 1 : 0
    color: selected ? Theme.selection : hover.hovered ? Theme.raised : "transparent"
    implicitHeight: row.implicitHeight + 5 * Theme.unit
    radius: Theme.cardRadius

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: root.chosen(point.modifiers)
    }

    RowLayout {
        id: row

        anchors.left: parent.left
        anchors.leftMargin: 4 * Theme.unit
        anchors.right: parent.right
        anchors.rightMargin: 4 * Theme.unit
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4 * Theme.unit

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 0

            ThemedText {
                Accessible.ignored: true
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignLeft
                text: root.title
                type: Theme.emphasis
            }

            ThemedText {
                Accessible.ignored: true
                Layout.fillWidth: true
                color: Theme.secondary
                text: root.subtitle
                type: Theme.caption
            }
        }

        ColumnLayout {
            spacing: 0

            ThemedText {
                Accessible.ignored: true
                Layout.alignment: Qt.AlignRight
                color: root.urgent ? Theme.amber : Theme.text
                text: root.erased
            }

            ThemedText {
                Accessible.ignored: true
                Layout.alignment: Qt.AlignRight
                color: Theme.faint
                text: root.deleted
                type: Theme.caption
            }
        }
    }
}
