import QtQuick
import Varnet

// A small disc in one of the theme's tones.
Rectangle {
    property int tone: 3

    color: Theme.tones[tone]
    implicitHeight: Theme.symbol / 2
    implicitWidth: Theme.symbol / 2
    radius: height / 2
}
