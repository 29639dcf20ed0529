import QtQuick
import Varnet

// The words of a turn, with what was found in them marked. Only rich text knows the ground on which the current hit
// stands out, and it takes long: it lies over the plain words, which keep the place.
BareText {
    id: root

    required property string words
    required property string marked
    required property bool hit
    property color ink: Theme.text

    color: rich.active ? "transparent" : ink
    text: marked === "" || hit ? words : marked
    textFormat: marked === "" || hit ? Text.PlainText : Text.StyledText
    type: Theme.reading
    wrapMode: Text.Wrap

    transform: Lift {
        id: lift

        words: root
    }

    Loader {
        id: rich

        active: root.hit && root.marked !== ""
        sourceComponent: Text {
            Accessible.ignored: true
            color: root.ink
            font: root.font
            text: root.marked
            textFormat: Text.RichText
            width: root.width
            wrapMode: Text.Wrap
        }
        y: -root.type.richTextDrop - lift.y // rich text stands right by itself
    }
}
