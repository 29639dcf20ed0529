import QtQuick
import QtQuick.Templates as T
import QtQuick.Layouts
import Varnet

// One engine with its state as a dot and in words; what is wrong with it on hover.
Item {
    id: root

    required property string name
    required property engineLine engine

    Accessible.description: engine.detail
    Accessible.name: name + ": " + engine.words
    Accessible.role: Accessible.StaticText
    T.ToolTip.delay: 400
    T.ToolTip.text: engine.detail
    T.ToolTip.visible: hover.hovered && engine.detail !== ""
    implicitHeight: row.implicitHeight

    HoverHandler {
        id: hover
    }

    RowLayout {
        id: row

        anchors.fill: parent
        spacing: 2 * Theme.unit

        StatusDot {
            tone: root.engine.tone
        }

        BareText {
            Layout.fillWidth: true
            color: Theme.secondary
            text: root.name
            type: Theme.caption
        }

        BareText {
            color: Theme.secondary
            text: root.engine.words
            type: Theme.caption
        }
    }
}
