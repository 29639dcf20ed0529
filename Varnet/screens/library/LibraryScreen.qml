import QtQuick
import Varnet

// All meetings by day, and the search through them.
FocusScope {
    id: root

    required property AppCommands commands
    required property AppRouter router
    required property LibraryModel library
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
        commands: root.commands
        library: root.library
        onPassedOn: {
            list.forceActiveFocus(Qt.TabFocusReason)
            if (root.library.currentRow < 0)
                root.library.moveBy(1)
        }
    }

    Loader {
        active: root.library.empty
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.max(list.y, (parent.height - height) / 2)
        sourceComponent: EmptyLibrary {
            commands: root.commands
            width: Math.min(26 * Theme.body.lineHeight, root.width - 16 * Theme.unit)
        }
    }

    Loader {
        active: root.library.noResults
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.max(list.y, (parent.height - height) / 2)
        sourceComponent: NoResults {
            query: root.library.query
            width: Math.min(26 * Theme.body.lineHeight, root.width - 16 * Theme.unit)
            onCleared: {
                root.library.query = ""
                header.search()
            }
        }
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
