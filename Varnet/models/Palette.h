#pragma once

#include <QColor>

#include <array>

namespace varnet {

/// The colours of one appearance. Every text colour (text, secondary, faint, accent, rec, amber, ok, the hues) keeps a
/// contrast of 4.5:1 or more on every ground (window, surface, raised, selection), and the eight hues stay apart for
/// colour-blind readers. At high contrast it is 7:1, and lines have at least 4.5:1.
struct Palette {
    QColor window;    ///< ground of the sidebar and of dialogs' surroundings
    QColor surface;   ///< ground of the content
    QColor raised;    ///< cards and pressed controls on the surface
    QColor selection; ///< ground of selected rows
    QColor line;      ///< hairlines and outlines
    QColor track;     ///< ground of meters and of the progress of work
    QColor text;
    QColor secondary;
    QColor faint;
    QColor accent;   ///< links, focus, the primary button's ground
    QColor rec;      ///< recording, failure
    QColor amber;    ///< work in progress, attention
    QColor ok;       ///< ready
    QColor onAccent; ///< text on an accent ground
    QColor onRec;    ///< text on a rec ground
    std::array<QColor, 8> speakers;

    static const Palette& light();
    static const Palette& dark();
    static const Palette& highContrastLight();
    static const Palette& highContrastDark();
};

} // namespace varnet
