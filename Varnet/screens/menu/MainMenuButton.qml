import QtQuick
import Varnet

// Opens the main menu, as F10 does.
IconButton {
    id: root

    required property MainWindow frame

    function show() {
        menu.popupAtFirst(root, 0, height)
    }

    Accessible.role: Accessible.ButtonMenu
    down: pressed || menu.visible
    symbol: "menu"
    text: qsTr("Main menu")
    onClicked: show()

    Shortcut {
        enabled: root.visible
        sequence: ShortcutKeys.menu
        onActivated: root.show()
    }

    MainMenu {
        id: menu

        frame: root.frame
        onKeysWanted: keys.open()
    }

    KeysDialog {
        id: keys
    }
}
