import QtQuick
import Varnet

// The name of a day above its meetings.
Item {
    id: root

    required property string day
    required property string detail

    Accessible.name: day + ", " + detail
    Accessible.role: Accessible.Heading
    implicitHeight: name.height + 8 * Theme.unit

    BareText {
        id: name

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 2 * Theme.unit
        anchors.left: parent.left
        anchors.leftMargin: 4 * Theme.unit
        text: root.day
        type: Theme.emphasis
        width: Math.min(implicitWidth, root.width - 8 * Theme.unit)
    }

    BareText {
        anchors.left: name.right
        anchors.leftMargin: 2 * Theme.unit
        anchors.top: name.top
        color: Theme.faint
        text: root.detail
        width: Math.min(implicitWidth, root.width - name.width - 10 * Theme.unit)
    }
}
