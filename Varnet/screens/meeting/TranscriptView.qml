import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The turns of a meeting, and below them the words that are still being recognised. While it is live it follows the
// newest words, until the reader scrolls up or edits.
FocusScope {
    id: root

    required property MeetingPage page
    property bool following: true

    onVisibleChanged: following = true

    TurnList {
        id: list

        anchors.fill: parent
        focus: true
        page: root.page

        function follow() {
            if (root.page.live && root.following)
                positionViewAtEnd()
        }

        onContentHeightChanged: Qt.callLater(follow)
        onContentYChanged: if (moving || bar.pressed) root.following = atYEnd
        onEditingChanged: if (editing >= 0) root.following = false
        onHeightChanged: Qt.callLater(follow)
        onLooked: root.following = atYEnd

        ScrollBar.vertical: ScrollBar {
            id: bar
        }
    }

    ThemedText {
        anchors.horizontalCenter: parent.horizontalCenter
        color: Theme.faint
        horizontalAlignment: Text.AlignHCenter
        text: root.page.emptyText
        type: Theme.reading
        visible: list.count === 0 && root.page.partialTurns.count === 0 && root.page.partialText === "" && root.page.importedText === ""
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
