import QtQuick
import Varnet

// The title of a row, edited in its place while it is renamed.
Item {
    id: root

    required property string title
    required property bool renaming

    signal renamed(string title)
    signal renameEnded

    implicitHeight: label.implicitHeight + (renaming ? Theme.unit : 0)

    BareText {
        id: label

        horizontalAlignment: Text.AlignLeft // in every script: titles stand below each other
        text: root.title
        type: Theme.emphasis
        visible: !root.renaming
        width: parent.width

        transform: Lift {
            words: label
        }
    }

    Loader {
        active: root.renaming
        anchors.fill: parent
        anchors.bottomMargin: 0.5 * Theme.unit
        anchors.leftMargin: -2 * Theme.unit
        anchors.topMargin: -0.5 * Theme.unit
        source: "RenameField.qml"
        onLoaded: {
            item.ended.connect(root.renameEnded)
            item.renamed.connect(root.renamed)
            item.begin(root.title)
        }
    }
}
