import QtQuick
import Varnet

// A remark below what a step shows.
ThemedText {
    color: Theme.secondary
    wrapMode: Text.Wrap
}
