import QtQuick
import Varnet

// A part of the window that is not there at first. It is made piece by piece once what is seen at first is up, or at
// once when it is wanted, and it stays.
Loader {
    id: root

    required property MainWindow frame
    required property url part // its file
    property var properties: ({})
    property bool wanted: false
    property bool settled: false // before, neither `properties` nor whether it is visible is settled

    function load() {
        if (settled && source.toString() === "")
            setSource(part, properties)
    }

    function loadAtOnce() {
        if (!settled || status === Loader.Ready)
            return
        if (progress < 1)
            source = "" // a file that is still being read would be made without its properties
        asynchronous = false
        load()
    }

    asynchronous: true

    Component.onCompleted: {
        settled = true
        if (wanted)
            loadAtOnce()
        else if (frame.complete)
            load()
    }
    onWantedChanged: if (wanted) loadAtOnce()

    Connections {
        function onCompleteChanged() {
            root.load()
        }

        target: root.frame
    }
}
