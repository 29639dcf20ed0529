import QtQuick
import QtQuick.Controls.Basic

// What all buttons have in common: Enter presses them, as Space does, and so do screen readers.
Button {
    id: root

    function press() {
        if (action)
            action.trigger(root)
        else if (enabled)
            clicked()
    }

    Accessible.name: text
    Accessible.onPressAction: press()
    Keys.onEnterPressed: press()
    Keys.onReturnPressed: press()
}
