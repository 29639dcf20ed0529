import QtQuick
import Varnet

// Opens the main menu, as F10 does.
IconButton {
    id: root

    required property MainWindow frame

    function show() {
        menu.active = true
        menu.item.popupAtFirst(root, 0, height)
    }

    Accessible.role: Accessible.ButtonMenu
    down: pressed || menu.item !== null && menu.item.visible
    symbol: "menu"
    text: qsTr("Main menu")
    onClicked: show()

    Shortcut {
        enabled: root.visible
        sequence: ShortcutKeys.menu
        onActivated: root.show()
    }

    Loader {
        id: menu

        active: false
        Component.onCompleted: setSource("MainMenu.qml", {"frame": root.frame})
    }

    Loader {
        id: keys

        active: false
        source: "KeysDialog.qml"
    }

    Connections {
        function onKeysWanted() {
            keys.active = true
            keys.item.open()
        }

        target: menu.item
    }
}
