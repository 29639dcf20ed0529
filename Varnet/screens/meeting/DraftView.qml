import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The stored draft, to be read. Arrows go from point to point.
ListView {
    id: root

    required property DraftModel draft

    Accessible.name: qsTr("Draft")
    Accessible.role: Accessible.List
    activeFocusOnTab: true
    bottomMargin: 8 * Theme.unit
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    highlightMoveDuration: 0
    leftMargin: 2 * Theme.unit
    model: draft

    ScrollBar.vertical: ScrollBar {}
    delegate: DraftPoint {
        width: ListView.view.width - 6 * Theme.unit
    }
    header: Column {
        bottomPadding: 2 * Theme.unit
        spacing: 2 * Theme.unit
        width: ListView.view.width - 6 * Theme.unit

        onHeightChanged: Qt.callLater(root.positionViewAtBeginning)

        ThemedText {
            color: Theme.faint
            text: root.draft.origin
            type: Theme.caption
            width: parent.width
            wrapMode: Text.Wrap
        }

        Repeater {
            model: [root.draft.outdatedText, root.draft.removedText, root.draft.emptyText]

            ThemedText {
                required property string modelData
                required property int index

                color: index === 0 ? Theme.amber : Theme.secondary
                text: modelData
                visible: text !== ""
                width: parent.width
                wrapMode: Text.Wrap
            }
        }
    }
}
