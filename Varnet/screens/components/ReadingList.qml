import QtQuick
import QtQuick.Controls.Basic
import Varnet

// A list to be read. The keyboard goes through its rows, of which the current one is the stop of the Tab key, and a row
// is brought into view with what is around it.
ListView {
    id: root

    signal looked // the keyboard went through the list

    // Takes the keys that go to another row.
    function stepped(key) {
        const steps = ({ [Qt.Key_Down]: 1, [Qt.Key_Up]: -1, [Qt.Key_PageDown]: 8, [Qt.Key_PageUp]: -8, [Qt.Key_End]: count, [Qt.Key_Home]: -count })
        if (key in steps)
            go(currentIndex + steps[key])
        return key in steps
    }

    function go(row) {
        currentIndex = Math.max(0, Math.min(count - 1, row))
        if (currentIndex === 0)
            positionViewAtBeginning() // what stands above the rows
        else
            positionViewAtIndex(currentIndex, ListView.Contain)
        if (currentIndex === count - 1 && currentIndex > 0)
            contentY = Math.max(contentY, Math.min(currentItem.y, endY())) // what stands below them
        looked()
    }

    // Where the view stands at the end, with the room below.
    function endY() {
        return originY + contentHeight + bottomMargin - height
    }

    function showEnd() {
        positionViewAtEnd()
        contentY = Math.max(contentY, endY())
    }

    function choose(row) {
        currentIndex = row
        currentItem.forceActiveFocus()
    }

    // Brings a row that is not well in view near the top, so that the next ones are there to be read.
    function bring(row) {
        const item = itemAtIndex(row)
        if (item !== null && item.y >= contentY && item.y + item.height <= contentY + height - 14 * Theme.unit)
            return
        positionViewAtIndex(row, ListView.Beginning)
        contentY = Math.max(originY - topMargin, contentY - height / 6)
        positionViewAtIndex(row, ListView.Contain)
    }

    Accessible.role: Accessible.List
    bottomMargin: Math.min(8 * Theme.unit, height / 8)
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    leftMargin: 2 * Theme.unit
    topMargin: 2 * Theme.unit
}
