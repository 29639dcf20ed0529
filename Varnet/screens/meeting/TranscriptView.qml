import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The turns of a meeting, and below them the words that are still being recognised. While it is live it follows the
// newest words, until the reader scrolls up.
Item {
    id: root

    required property MeetingPage page
    property bool following: true

    onVisibleChanged: following = true

    ListView {
        id: list

        Accessible.name: qsTr("Transcript")
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.fill: parent
        bottomMargin: 8 * Theme.unit
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: 200 * Theme.unit
        clip: true
        model: root.page.turns
        topMargin: 2 * Theme.unit

        function follow() {
            if (root.page.live && root.following)
                positionViewAtEnd()
        }

        onContentHeightChanged: Qt.callLater(follow)
        onContentYChanged: if (moving || bar.pressed) root.following = atYEnd
        onHeightChanged: Qt.callLater(follow)

        ScrollBar.vertical: ScrollBar {
            id: bar
        }
        delegate: TurnRow {
            width: ListView.view.width - 4 * Theme.unit
        }
        footer: PartialWords {
            page: root.page
            width: ListView.view.width - 4 * Theme.unit
        }
    }

    ThemedText {
        anchors.horizontalCenter: parent.horizontalCenter
        color: Theme.faint
        horizontalAlignment: Text.AlignHCenter
        text: root.page.emptyText
        type: Theme.reading
        visible: list.count === 0 && root.page.partialTurns.count === 0 && root.page.partialText === ""
        width: Math.min(120 * Theme.unit, parent.width)
        wrapMode: Text.Wrap
        y: parent.height / 3
    }

    Pill {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 4 * Theme.unit
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: "down"
        text: qsTr("Jump to live")
        visible: root.page.live && !root.following
        onClicked: {
            root.following = true
            list.follow()
        }
    }
}
