import QtQuick
import Varnet

// A small disc in one of the theme's tones.
Rectangle {
    property int tone: 3

    Accessible.ignored: true
    color: Theme.tones[tone]
    implicitHeight: 2 * Theme.unit
    implicitWidth: 2 * Theme.unit
    radius: height / 2
}
