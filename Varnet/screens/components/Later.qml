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
    property bool complete: false // before, neither `properties` nor whether it is visible is settled

    function load() {
        if (complete && source.toString() === "")
            setSource(part, properties)
    }

    function loadAtOnce() {
        if (!complete || status === Loader.Ready)
            return
        if (progress < 1)
            source = "" // a file that is still being read would be made without its properties
        asynchronous = false
        load()
    }

    asynchronous: true

    Component.onCompleted: {
        complete = true
        if (wanted)
            loadAtOnce()
        else if (frame.shown)
            load()
    }
    onWantedChanged: if (wanted) loadAtOnce()

    Connections {
        function onShownChanged() {
            root.load()
        }

        target: root.frame
    }
}
