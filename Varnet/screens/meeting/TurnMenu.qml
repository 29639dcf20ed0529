import QtQuick
import QtQuick.Controls.Basic
import Varnet

// What can be done with a turn.
ThemedMenu {
    id: root

    property bool edited: false
    property bool playable: false

    signal editAsked
    signal nameAsked
    signal playAsked
    signal setBackAsked

    title: qsTr("What to do with this turn")

    ThemedMenuItem {
        keys: qsTr("Enter")
        text: qsTr("Edit words")
        onTriggered: root.editAsked()
    }

    ThemedMenuItem {
        enabled: root.playable
        keys: qsTr("Ctrl+Enter")
        text: qsTr("Play from here")
        onTriggered: root.playAsked()
    }

    ThemedMenuItem {
        keys: "F2"
        text: qsTr("Name this speaker…")
        onTriggered: root.nameAsked()
    }

    ThemedMenuItem {
        enabled: root.edited
        text: qsTr("Set back to the recognised words")
        onTriggered: root.setBackAsked()
    }
}
