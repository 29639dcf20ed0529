import QtQuick
import QtQuick.Controls.impl
import Varnet

// One of the application's symbols, tinted.
IconImage {
    required property string symbol

    color: Theme.text
    height: sourceSize.height
    source: symbol === "" ? "" : Qt.resolvedUrl("../icons/" + symbol + ".svg")
    sourceSize: Qt.size(Theme.symbol, Theme.symbol)
    width: sourceSize.width
}
