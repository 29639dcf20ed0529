import QtQuick
import QtQuick.Layouts
import Varnet

// What there is to know about the settings above it.
ThemedText {
    Accessible.name: text
    Accessible.role: Accessible.StaticText
    Layout.fillWidth: true
    color: Theme.secondary
    wrapMode: Text.Wrap
}
