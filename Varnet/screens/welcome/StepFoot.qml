import QtQuick
import QtQuick.Layouts
import Varnet

// How far the flow has come, and the ways back and on.
FocusScope {
    id: root

    required property Onboarding onboarding
    required property bool skips

    focus: true
    implicitHeight: row.implicitHeight + 10 * Theme.unit

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        color: Theme.line
        height: 1
    }

    RowLayout {
        id: row

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3 * Theme.unit
        width: Math.min(62 * Theme.body.lineHeight, parent.width - 10 * Theme.unit)

        Row {
            Accessible.ignored: true
            spacing: 2 * Theme.unit

            Repeater {
                model: root.onboarding.stepCount

                Rectangle {
                    required property int index

                    color: index === root.onboarding.step ? Theme.accent : Theme.line
                    height: Theme.symbol / 2
                    radius: height / 2
                    width: index === root.onboarding.step ? 1.25 * Theme.symbol : height
                }
            }
        }

        ThemedText {
            Layout.fillWidth: true
            color: Theme.secondary
            text: root.onboarding.progress
            type: Theme.caption
        }

        PlainButton {
            Layout.fillHeight: true
            text: qsTr("Back")
            visible: !root.onboarding.first
            onClicked: root.onboarding.back()
        }

        PrimaryButton {
            id: on

            plain: root.skips
            text: root.onboarding.last ? qsTr("Start using %1").arg(Qt.application.displayName) : root.skips ? qsTr("Skip") : qsTr("Continue")
            onClicked: root.onboarding.next()
            Component.onCompleted: forceActiveFocus(Qt.TabFocusReason)
        }
    }
}
