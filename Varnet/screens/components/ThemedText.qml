import QtQuick

// Text that stands by itself.
BareText {
    Accessible.ignored: text === ""
    Accessible.name: text
    Accessible.role: Accessible.StaticText
}
