import QtQuick
import Varnet

// One of the application's symbols, tinted.
Image {
    required property string symbol
    property color color: Theme.text

    height: Theme.symbol
    source: symbol === "" ? "" : "image://symbols/" + symbol + color
    sourceSize.height: Theme.symbol
    sourceSize.width: Theme.symbol
    width: Theme.symbol
}
