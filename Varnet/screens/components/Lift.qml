import QtQuick
import Varnet

// Has letters of a taller font stand as high in their line as those of the interface's font.
Translate {
    required property BareText words

    y: Math.min(0, Math.round(words.type.ascent - words.baselineOffset))
}
