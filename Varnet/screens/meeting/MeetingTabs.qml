import QtQuick
import QtQuick.Controls.Basic
import Varnet

// The two sides of a meeting: what was said, and what was noted.
TabBar {
    id: root

    function step(by) {
        currentIndex = (currentIndex + by + count) % count
    }

    function stepFocused(by) {
        step(by)
        currentItem.forceActiveFocus(Qt.TabFocusReason)
    }

    Accessible.name: qsTr("Transcript or notes")
    background: Item {}
    spacing: Theme.unit

    Keys.onLeftPressed: stepFocused(-1)
    Keys.onRightPressed: stepFocused(1)

    ThemedTab {
        text: qsTr("Transcript")
    }

    ThemedTab {
        text: qsTr("Notes")
    }
}
