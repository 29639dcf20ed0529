import QtQuick
import QtQuick.Templates as T
import Varnet

// Shows where in its view one is: while that changes and under the pointer, or, always on, wherever there is more.
T.ScrollBar {
    id: root

    Accessible.ignored: true
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    minimumSize: vertical && height > 0 ? Math.min(1, 8 * Theme.unit / height) : 0
    padding: 2

    contentItem: Rectangle {
        color: root.pressed ? Theme.secondary : Theme.faint
        implicitHeight: 1.5 * Theme.unit
        implicitWidth: 1.5 * Theme.unit
        opacity: 0
        radius: width / 2

        states: State {
            name: "active"
            when: root.size < 1 && (root.active || root.policy === T.ScrollBar.AlwaysOn || Theme.highContrast)

            PropertyChanges { root.contentItem.opacity: 0.75 }
        }
        transitions: Transition {
            from: "active"

            SequentialAnimation {
                PauseAnimation { duration: 450 }
                NumberAnimation { duration: Theme.motion; property: "opacity" }
            }
        }
    }
}
