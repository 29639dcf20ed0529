import QtQuick
import QtQuick.Controls.Basic
import Varnet

// A menu of commands that pops up where it is asked for. Its `title` is for screen readers.
Menu {
    id: root

    // For who asks by the keyboard, which is in the first entry then.
    function popupAtFirst(item, x, y) {
        popup(item, x, y)
        let row = 0
        while (row < count && !(itemAt(row) instanceof MenuItem && itemAt(row).visible && itemAt(row).enabled))
            ++row
        currentIndex = row < count ? row : -1
    }

    margins: 2 * Theme.unit
    padding: Theme.unit

    Component.onCompleted: contentItem.parent.Accessible.name = Qt.binding(() => title)

    background: Rectangle {
        border.color: Theme.line
        border.width: 1
        color: Theme.raised
        implicitWidth: 13 * Theme.body.lineHeight // the longest entry fits at every font size
        radius: Theme.cardRadius
    }
    contentItem: ListView {
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: root.currentIndex
        implicitHeight: contentHeight
        keyNavigationEnabled: false // the menu moves, past what cannot be chosen
        model: root.contentModel

        ScrollBar.vertical: ThemedScrollBar {}
    }
    delegate: ThemedMenuItem {}
}
