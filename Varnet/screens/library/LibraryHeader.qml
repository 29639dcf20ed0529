import QtQuick
import Varnet

// The name of the page, how much is selected or found, and what can be done here, which stands below where the words
// are large and comes with the second frame.
Item {
    id: root

    required property MainWindow frame
    readonly property bool narrow: width < 26 * Theme.body.lineHeight
    readonly property real gap: 3 * Theme.unit
    readonly property real toolsHeight: Theme.body.lineHeight + 2 * Theme.unit
    readonly property real room: width - summary.width - gap // of the name and the tools beside it

    signal passedOn

    function search() {
        if (tools.item)
            tools.item.search()
    }

    implicitHeight: narrow && !frame.library.empty ? name.implicitHeight + 2 * Theme.unit + toolsHeight : Math.max(name.implicitHeight, toolsHeight)

    ThemedText {
        id: name

        Accessible.role: Accessible.Heading
        anchors.left: parent.left
        height: root.narrow ? implicitHeight : root.height
        text: qsTr("All Meetings")
        type: Theme.title
        width: Math.min(Math.ceil(implicitWidth), Math.max(root.width * 0.29, root.room - (root.narrow ? 0 : tools.width + root.gap)))
    }

    ThemedText {
        id: summary

        anchors.baseline: name.baseline
        anchors.left: name.right
        anchors.leftMargin: root.gap
        color: Theme.secondary
        text: root.frame.library.summary
    }

    Loader {
        id: tools

        active: root.frame.shown
        anchors.right: parent.right
        height: root.toolsHeight
        visible: !root.frame.library.empty
        y: (root.height - height) / (root.narrow ? 1 : 2)
        width: root.narrow ? root.width : Math.min(implicitWidth, root.room - name.implicitWidth - root.gap)
        Component.onCompleted: setSource("LibraryTools.qml", {"commands": root.frame.commands, "library": root.frame.library})
    }

    Connections {
        function onPassedOn() {
            root.passedOn()
        }

        target: tools.item
    }
}
