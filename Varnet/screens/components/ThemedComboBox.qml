import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Varnet

// One choice out of several, in a list that drops down. `name` says what is chosen, to screen readers.
ComboBox {
    id: root

    required property string name
    property bool dropping: false // Enter has opened the list and is still down
    readonly property real mark: 5 * Theme.unit + Theme.symbol // the place of the arrow

    function drop(event) {
        event.accepted = dropping = !popup.visible
        if (dropping)
            popup.open()
    }

    Accessible.description: enabled ? displayText : qsTr("Unavailable") + ", " + displayText
    Accessible.focusable: activeFocusOnTab
    Accessible.name: name
    Accessible.onPressAction: popup.open()
    Keys.onEnterPressed: event => drop(event)
    Keys.onReleased: event => {
        event.accepted = dropping // it would close the list
        dropping = false
    }
    Keys.onReturnPressed: event => drop(event)
    bottomPadding: Theme.unit
    focusPolicy: enabled ? Qt.StrongFocus : Qt.NoFocus
    font: Theme.body.font
    implicitContentWidthPolicy: ComboBox.WidestText
    implicitHeight: Theme.body.lineHeight + 2 * Theme.unit
    leftPadding: mirrored ? mark : 3 * Theme.unit
    opacity: enabled ? 1 : 0.45
    rightPadding: mirrored ? 3 * Theme.unit : mark
    topPadding: Theme.unit
    wheelEnabled: false // the wheel scrolls what it stands in

    background: Rectangle {
        border.color: Theme.line
        border.width: 1
        color: root.down || root.hovered ? Theme.raised : Theme.surface
        radius: Theme.controlRadius

        FocusRing {
            anchors.fill: parent
            control: root
        }
    }
    contentItem: TextInput { // measures the longest choice; the words that are seen can be cut off
        Accessible.ignored: true
        clip: true
        color: "transparent"
        enabled: false
        font: Theme.body.font
        text: root.displayText

        BareText {
            anchors.fill: parent
            text: root.displayText
        }
    }
    delegate: ItemDelegate {
        id: item

        required property int index

        Accessible.checkable: true
        Accessible.checked: root.currentIndex === index
        Accessible.name: text
        highlighted: root.highlightedIndex === index
        leftPadding: 2 * Theme.unit
        padding: 1.5 * Theme.unit
        rightPadding: 2 * Theme.unit
        text: root.textAt(index)
        width: ListView.view.width

        background: Rectangle {
            border.color: Theme.line
            border.width: item.highlighted && Theme.highContrast ? 1 : 0
            color: item.highlighted ? Theme.selection : "transparent"
            radius: Theme.controlRadius
        }
        contentItem: RowLayout {
            spacing: 2 * Theme.unit

            BareText {
                Layout.fillWidth: true
                text: item.text
            }

            Icon {
                opacity: root.currentIndex === item.index ? 1 : 0
                symbol: "check"
            }
        }
    }
    indicator: Icon {
        color: Theme.secondary
        symbol: "expand"
        x: root.mirrored ? 3 * Theme.unit : root.width - width - 3 * Theme.unit
        y: (root.height - height) / 2
    }
    popup: Popup {
        margins: 2 * Theme.unit
        padding: Theme.unit
        width: root.width
        y: root.height + Theme.unit

        background: Rectangle {
            border.color: Theme.line
            border.width: 1
            color: Theme.surface
            radius: Theme.cardRadius
        }
        contentItem: ListView {
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            currentIndex: root.highlightedIndex
            highlightMoveDuration: 0
            implicitHeight: contentHeight
            model: root.delegateModel

            ScrollBar.vertical: ThemedScrollBar {}
        }
    }
}
