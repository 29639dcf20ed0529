import QtQuick
import QtQuick.Layouts
import Varnet

// One meeting of the library; the first of a day carries the day's heading.
Column {
    id: root

    required property string title
    required property string subtitle
    required property string badgeText
    required property int badgeTone
    required property bool badgeMarked
    required property string time
    required property string duration
    required property bool startsDay
    required property string day
    required property string dayDetail
    required property string spoken
    property bool current: false
    property bool focused: false

    signal chosen

    Accessible.name: spoken
    Accessible.onPressAction: chosen()
    Accessible.role: Accessible.ListItem
    Accessible.selected: current

    DayHeading {
        day: root.day
        detail: root.dayDetail
        visible: root.startsDay
        width: root.width
    }

    Rectangle {
        border.color: Theme.accent
        border.width: root.current && root.focused ? 1 : 0
        color: root.current ? Theme.selection : hover.hovered ? Theme.raised : "transparent"
        implicitHeight: row.implicitHeight + 5 * Theme.unit
        radius: Theme.cardRadius
        width: root.width

        HoverHandler {
            id: hover
        }

        TapHandler {
            onTapped: root.chosen()
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

            Badge {
                Accessible.ignored: true
                marked: root.badgeMarked
                text: root.badgeText
                tone: root.badgeTone
            }

            ColumnLayout {
                Layout.minimumWidth: 20 * Theme.unit
                spacing: 0

                ThemedText {
                    Accessible.ignored: true
                    Layout.alignment: Qt.AlignRight
                    text: root.time
                }

                ThemedText {
                    Accessible.ignored: true
                    Layout.alignment: Qt.AlignRight
                    color: Theme.faint
                    text: root.duration
                    type: Theme.caption
                }
            }
        }
    }
}
