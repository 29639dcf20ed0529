import QtQuick
import QtQuick.Templates as T

// What all buttons have in common: Enter presses them, as Space does, and so do screen readers. Qt 6.4 does not
// tell them by itself that a control is disabled.
T.Button {
    id: root

    function press() {
        if (action)
            action.trigger(root)
        else if (enabled)
            clicked()
    }

    Accessible.description: enabled ? "" : qsTr("Unavailable")
    Accessible.focusable: activeFocusOnTab
    Accessible.name: text
    Accessible.onPressAction: press()
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) press() }
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) press() }
    focusPolicy: enabled ? Qt.StrongFocus : Qt.NoFocus
    implicitHeight: Math.max(implicitBackgroundHeight, implicitContentHeight + topPadding + bottomPadding)
    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)
}
