import QtQuick
import Varnet

// A part of the window that the first frame does without. It is made piece by piece once that frame is up, or at once
// when it is wanted, and it stays.
Loader {
    id: root

    required property MainWindow frame
    required property url part // its file
    property var properties: ({})
    property bool wanted: false

    function load() {
        if (source.toString() === "")
            setSource(part, properties)
    }

    asynchronous: !wanted

    Component.onCompleted: if (wanted || frame.shown) load()
    onWantedChanged: if (wanted) load()

    Connections {
        function onShownChanged() {
            root.load()
        }

        target: root.frame
    }
}
