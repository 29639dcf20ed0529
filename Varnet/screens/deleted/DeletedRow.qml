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
    readonly property bool narrow: width < 26 * Theme.body.lineHeight // the times stand below the title
    property bool pooled: false // kept for another use; screen readers would find it otherwise

    signal chosen(int modifiers)
    signal menuAsked(point at)

    Accessible.focused: current && focused
    Accessible.name: spoken
    Accessible.onPressAction: chosen(Qt.NoModifier)
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: selected
    ListView.onPooled: pooled = true
    ListView.onReused: pooled = false
    border.color: current && focused ? Theme.accent : Theme.line
    border.width: current && focused || selected && Theme.highContrast ? 1 : 0
    color: selected ? Theme.selection : hover.hovered ? Theme.raised : "transparent"
    implicitHeight: row.implicitHeight + 5 * Theme.unit
    radius: Theme.cardRadius
    visible: !pooled

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: root.chosen(point.modifiers)
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: eventPoint => root.menuAsked(eventPoint.position)
    }

    GridLayout {
        id: row

        anchors.left: parent.left
        anchors.leftMargin: 4 * Theme.unit
        anchors.right: parent.right
        anchors.rightMargin: 4 * Theme.unit
        anchors.verticalCenter: parent.verticalCenter
        columnSpacing: 4 * Theme.unit
        rowSpacing: 0

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 0

            BareText {
                id: title

                Layout.fillWidth: true
                horizontalAlignment: Text.AlignLeft
                text: root.title
                type: Theme.emphasis

                transform: Lift {
                    words: title
                }
            }

            BareText {
                Layout.fillWidth: true
                color: Theme.secondary
                horizontalAlignment: Text.AlignLeft
                text: root.subtitle
                type: Theme.caption
            }
        }

        ColumnLayout {
            Layout.column: root.narrow ? 0 : 1
            Layout.fillWidth: root.narrow
            Layout.row: root.narrow ? 1 : 0
            spacing: 0

            BareText {
                Layout.fillWidth: true
                horizontalAlignment: root.narrow ? Text.AlignLeft : Text.AlignRight
                color: root.urgent ? Theme.amber : Theme.text
                text: root.erased
            }

            BareText {
                Layout.fillWidth: true
                color: Theme.faint
                horizontalAlignment: root.narrow ? Text.AlignLeft : Text.AlignRight
                text: root.deleted
                type: Theme.caption
            }
        }
    }
}
