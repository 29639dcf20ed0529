import QtQuick
import Varnet

// One meeting of the library; the first of a day carries the day's heading.
Item {
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
    implicitHeight: card.y + card.height
    visible: !pooled

    Loader {
        id: heading

        active: root.startsDay
        width: root.width
        sourceComponent: DayHeading {
            day: root.day
            detail: root.dayDetail
        }
    }

    Rectangle {
        id: card

        border.color: root.current && root.focused ? Theme.accent : Theme.line
        border.width: root.current && root.focused || root.selected && Theme.highContrast ? 1 : 0
        color: root.selected ? Theme.selection : pointer.containsMouse ? Theme.raised : "transparent"
        height: found.y + found.height + (root.renaming ? 1.5 : 2.5) * Theme.unit
        radius: Theme.cardRadius
        width: root.width
        y: root.startsDay ? heading.height : 0

        MouseArea {
            id: pointer

            acceptedButtons: Qt.AllButtons
            anchors.fill: parent
            hoverEnabled: true
            onClicked: mouse => {
                const place = mapToItem(root, mouse.x, mouse.y)
                if (mouse.button === Qt.RightButton)
                    root.menuAsked(place.x, place.y)
                else if (mouse.button === Qt.LeftButton)
                    root.chosen(mouse.modifiers)
            }
        }

        RowTitle {
            id: name

            anchors.left: parent.left
            anchors.leftMargin: 4 * Theme.unit
            anchors.right: root.narrow ? times.left : badge.left
            anchors.rightMargin: 4 * Theme.unit
            renaming: root.renaming
            title: root.title
            y: 2.5 * Theme.unit
            onRenameEnded: root.renameEnded()
            onRenamed: title => root.renamed(title)
        }

        BareText {
            id: more

            anchors.left: name.left
            anchors.right: name.right
            anchors.top: name.bottom
            color: Theme.secondary
            horizontalAlignment: Text.AlignLeft
            text: root.subtitle
            type: Theme.caption
        }

        // Below the words where there is no room beside them.
        Badge {
            id: badge

            anchors.left: root.narrow ? name.left : undefined
            anchors.right: root.narrow ? undefined : times.left
            anchors.rightMargin: 4 * Theme.unit
            marked: root.badgeMarked
            text: root.badgeText
            tone: root.badgeTone
            y: root.narrow ? more.y + more.height : name.y + (name.height + more.height - height) / 2
        }

        Loader {
            id: found

            active: root.snippet !== ""
            anchors.left: name.left
            anchors.right: times.right
            anchors.top: root.narrow ? badge.bottom : more.bottom
            height: active ? implicitHeight : 0
            sourceComponent: BareText {
                color: Theme.secondary
                maximumLineCount: root.narrow ? 2 : 1
                text: root.snippet
                textFormat: Text.StyledText
                topPadding: Theme.unit
                wrapMode: Text.Wrap
            }
        }

        RowTimes {
            id: times

            anchors.right: parent.right
            anchors.rightMargin: 4 * Theme.unit
            duration: root.duration
            lowered: root.renaming
            time: root.time
            y: name.y
        }
    }
}
