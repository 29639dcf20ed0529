import QtQuick

// Text that stands by itself: screen readers are told it.
BareText {
    Accessible.ignored: text === ""
    Accessible.name: text
    Accessible.role: Accessible.StaticText
}
