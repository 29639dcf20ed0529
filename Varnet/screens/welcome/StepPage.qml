import QtQuick
import QtQuick.Layouts
import Varnet

// One step: its heading, what it is about, what it shows, and the way on. Its main button has the focus first; a screen
// reader reads the heading with it.
FocusScope {
    id: root

    required property MainWindow frame
    required property string heading
    required property string explanation
    property bool skips: false // what it offers has not been done yet
    default property alias content: body.data

    Accessible.name: qsTr("%1: %2").arg(frame.onboarding.progress).arg(heading)
    Accessible.role: Accessible.Grouping
    focus: true
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) frame.onboarding.next() }
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) frame.onboarding.next() }
    Keys.onDownPressed: page.scroll(2 * Theme.reading.lineHeight)
    Keys.onUpPressed: page.scroll(-2 * Theme.reading.lineHeight)

    ScrollArea {
        id: page

        anchors.bottom: foot.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        contentHeight: column.height + 8 * Theme.unit
        telling: true

        ColumnLayout {
            id: column

            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 3 * Theme.unit
            width: Math.min(28 * Theme.body.lineHeight, page.width - 16 * Theme.unit)
            y: { // a heading stays where the last one was, not too far up in a high window
                const usual = Math.max(page.height / 6, page.height / 2 - 15 * Theme.body.lineHeight)
                return Math.max(4 * Theme.unit, Math.min(usual, (page.height - height) / 2))
            }

            ThemedText {
                Accessible.role: Accessible.Heading
                Layout.fillWidth: true
                text: root.heading
                type: Theme.title
                wrapMode: Text.Wrap
            }

            ThemedText {
                Layout.bottomMargin: 3 * Theme.unit
                Layout.fillWidth: true
                color: Theme.secondary
                text: root.explanation
                type: Theme.reading
                wrapMode: Text.Wrap
            }

            ColumnLayout {
                id: body

                Layout.fillWidth: true
                spacing: 4 * Theme.unit
            }
        }
    }

    StepFoot {
        id: foot

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        onboarding: root.frame.onboarding
        skips: root.skips
    }
}
