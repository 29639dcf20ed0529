import QtQuick
import Varnet

// All meetings by day, and the search through them.
FocusScope {
    id: root

    required property MainWindow frame
    readonly property AppCommands commands: frame.commands
    readonly property AppRouter router: frame.router
    readonly property LibraryModel library: frame.library
    property real covered: 0 // at the bottom, by what lies over it for a while

    Connections {
        function onSearchFocusRequestChanged() {
            header.search()
        }

        target: root.router
    }

    LibraryHeader {
        id: header

        anchors.left: list.left
        anchors.leftMargin: 4 * Theme.unit
        anchors.right: list.right
        anchors.rightMargin: 4 * Theme.unit
        anchors.top: parent.top
        anchors.topMargin: 7 * Theme.unit
        frame: root.frame
        onPassedOn: {
            list.forceActiveFocus(Qt.TabFocusReason)
            if (root.library.currentRow < 0)
                root.library.moveBy(1)
        }
    }

    Loader {
        active: root.library.empty
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(26 * Theme.body.lineHeight, root.width - 16 * Theme.unit)
        y: Math.max(list.y, (parent.height - height) / 2)
        Component.onCompleted: setSource("EmptyLibrary.qml", {"commands": root.commands})
    }

    Loader {
        id: noResults

        active: root.library.noResults
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(26 * Theme.body.lineHeight, root.width - 16 * Theme.unit)
        y: Math.max(list.y, (parent.height - height) / 2)
        Component.onCompleted: setSource("NoResults.qml", {"library": root.library})
    }

    Connections {
        function onCleared() {
            root.library.query = ""
            header.search()
        }

        target: noResults.item
    }

    LibraryList {
        id: list

        anchors.bottom: parent.bottom
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: header.bottom
        anchors.topMargin: 2 * Theme.unit
        bottomMargin: 6 * Theme.unit + root.covered
        commands: root.commands
        focus: true
        library: root.library
        router: root.router
        visible: count > 0
        width: Math.min(240 * Theme.unit, root.width - 8 * Theme.unit)
    }

    Later {
        frame: root.frame
        part: Qt.resolvedUrl("../components/ScrollBarOf.qml")
        properties: ({ "view": list })
    }

    // While rows are scrolled away above.
    Rectangle {
        anchors.left: list.left
        anchors.right: list.right
        anchors.top: list.top
        color: Theme.line
        height: 1
        visible: list.visible && list.contentY > list.originY
    }
}
