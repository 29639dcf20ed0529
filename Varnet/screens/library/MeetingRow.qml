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
    required property string snippet
    required property bool selected
    required property bool renaming
    required property string spoken
    property bool current: false
    property bool focused: false
    readonly property bool narrow: width < 26 * Theme.body.lineHeight // no room for a badge beside the title
    property bool pooled: false // kept for another use; screen readers would find it otherwise

    signal chosen(int modifiers)
    signal menuAsked(real x, real y)
    signal renamed(string title)
    signal renameEnded

    Accessible.focused: current && focused
    Accessible.name: spoken
    Accessible.onPressAction: chosen(Qt.NoModifier)
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: selected
    ListView.onPooled: pooled = true
    ListView.onReused: pooled = false
    visible: !pooled

    Loader {
        active: root.startsDay
        visible: active
        width: root.width

        sourceComponent: DayHeading {
            day: root.day
            detail: root.dayDetail
        }
    }

    Rectangle {
        border.color: root.current && root.focused ? Theme.accent : Theme.line
        border.width: root.current && root.focused || root.selected && Theme.highContrast ? 1 : 0
        color: root.selected ? Theme.selection : pointer.containsMouse ? Theme.raised : "transparent"
        implicitHeight: words.implicitHeight + 5 * Theme.unit
        radius: Theme.cardRadius
        width: root.width

        MouseArea {
            id: pointer

            acceptedButtons: Qt.LeftButton | Qt.RightButton
            anchors.fill: parent
            hoverEnabled: true
            onClicked: mouse => {
                const place = mapToItem(root, mouse.x, mouse.y)
                if (mouse.button === Qt.RightButton)
                    root.menuAsked(place.x, place.y)
                else
                    root.chosen(mouse.modifiers)
            }
        }

        ColumnLayout {
            id: words

            anchors.left: parent.left
            anchors.leftMargin: 4 * Theme.unit
            anchors.right: parent.right
            anchors.rightMargin: 4 * Theme.unit
            anchors.verticalCenter: parent.verticalCenter
            spacing: 0

            GridLayout {
                Layout.fillWidth: true
                columnSpacing: 4 * Theme.unit
                rowSpacing: 0

                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 0

                    RowTitle {
                        Layout.fillWidth: true
                        renaming: root.renaming
                        title: root.title
                        onRenameEnded: root.renameEnded()
                        onRenamed: title => root.renamed(title)
                    }

                    ThemedText {
                        Accessible.ignored: true
                        Layout.fillWidth: true
                        color: Theme.secondary
                        horizontalAlignment: Text.AlignLeft
                        text: root.subtitle
                        type: Theme.caption
                    }
                }

                Badge {
                    Accessible.ignored: true
                    Layout.column: root.narrow ? 0 : 1
                    Layout.row: root.narrow ? 1 : 0
                    marked: root.badgeMarked
                    text: root.badgeText
                    tone: root.badgeTone
                }

                RowTimes {
                    Layout.column: 2
                    Layout.rowSpan: root.narrow ? 2 : 1
                    Layout.minimumWidth: 20 * Theme.unit
                    duration: root.duration
                    time: root.time
                }
            }

            Loader {
                Layout.fillWidth: true
                Layout.topMargin: Theme.unit
                active: root.snippet !== ""
                visible: active

                sourceComponent: ThemedText {
                    Accessible.ignored: true
                    color: Theme.secondary
                    text: root.snippet
                    textFormat: Text.StyledText
                }
            }
        }
    }
}
