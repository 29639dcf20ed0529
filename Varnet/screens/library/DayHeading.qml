import QtQuick
import Varnet

// The name of a day above its meetings.
Item {
    id: root

    required property string day
    required property string detail

    Accessible.name: day + ", " + detail
    Accessible.role: Accessible.Heading
    implicitHeight: row.implicitHeight + 8 * Theme.unit

    Row {
        id: row

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 2 * Theme.unit
        anchors.left: parent.left
        anchors.leftMargin: 4 * Theme.unit
        spacing: 2 * Theme.unit

        ThemedText {
            id: name

            Accessible.ignored: true
            text: root.day
            type: Theme.emphasis
        }

        ThemedText {
            Accessible.ignored: true
            anchors.baseline: name.baseline
            color: Theme.faint
            text: root.detail
            type: Theme.body
        }
    }
}
