import QtQuick
import QtQuick.Templates
import Varnet

// Gives a view its scroll bar.
Item {
    id: root

    required property Flickable view

    Component.onCompleted: view.ScrollBar.vertical = bar

    ThemedScrollBar {
        id: bar

        parent: root.view
    }
}
