import QtQuick
import QtQuick.Controls.Basic

// What all buttons have in common: Enter presses them, as Space does.
Button {
    Accessible.name: text
    Keys.onEnterPressed: clicked()
    Keys.onReturnPressed: clicked()
}
