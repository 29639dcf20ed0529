import QtQuick
import QtQuick.Layouts
import Varnet

// The name of a day above its meetings.
Item {
    id: root

    required property string day
    required property string detail

    Accessible.name: day + ", " + detail
    Accessible.role: Accessible.Heading
    implicitHeight: row.implicitHeight + 8 * Theme.unit

    RowLayout {
        id: row

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 2 * Theme.unit
        anchors.left: parent.left
        anchors.leftMargin: 4 * Theme.unit
        anchors.right: parent.right
        anchors.rightMargin: 4 * Theme.unit
        spacing: 2 * Theme.unit

        ThemedText {
            Accessible.ignored: true
            Layout.alignment: Qt.AlignBaseline
            text: root.day
            type: Theme.emphasis
        }

        ThemedText {
            Accessible.ignored: true
            Layout.alignment: Qt.AlignBaseline
            Layout.fillWidth: true
            color: Theme.faint
            text: root.detail
            type: Theme.body
        }
    }
}
