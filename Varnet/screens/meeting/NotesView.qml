import QtQuick
import QtQuick.Layouts
import Varnet

// The user's own notes, and beside them the draft if there is one; one above the other where it is narrow.
FocusScope {
    id: root

    required property MeetingPage page
    readonly property bool wide: width >= 44 * Theme.body.lineHeight

    GridLayout {
        anchors.fill: parent
        anchors.topMargin: 4 * Theme.unit
        columnSpacing: 6 * Theme.unit
        columns: root.wide ? 2 : 1
        rowSpacing: 4 * Theme.unit

        OwnNotes {
            Layout.bottomMargin: root.wide || !draft.visible ? 6 * Theme.unit : 0
            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.preferredHeight: 1
            Layout.preferredWidth: 1
            focus: true
            page: root.page
        }

        DraftView {
            id: draft

            Layout.fillHeight: true
            Layout.fillWidth: true
            Layout.preferredHeight: 1
            Layout.preferredWidth: 1
            draft: root.page.draft
            visible: root.page.draft.present
        }
    }
}
