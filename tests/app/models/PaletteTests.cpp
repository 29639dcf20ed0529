#include "Varnet/models/Palette.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace varnet;

namespace {

double luminance(const QColor& color) {
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// The contrast ratio of the Web Content Accessibility Guidelines.
double contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one), b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

} // namespace

TEST(Palettes, EveryTextIsReadableOnEveryGround) {
    const struct {
        const char* name;
        const Palette& palette;
        double text, line; ///< the least contrast on a ground
    } rows[] = {{"light", Palette::light(), 4.5, 1},
                {"dark", Palette::dark(), 4.5, 1},
                {"high contrast, light", Palette::highContrastLight(), 7, 4.5},
                {"high contrast, dark", Palette::highContrastDark(), 7, 4.5}};
    for (const auto& [name, palette, least, leastOfLine] : rows) {
        SCOPED_TRACE(name);
        std::vector<QColor> texts{palette.text, palette.secondary, palette.faint, palette.accent,
                                  palette.rec,  palette.amber,     palette.ok};
        texts.insert(texts.end(), palette.speakers.begin(), palette.speakers.end());
        for (const auto& ground : {palette.window, palette.surface, palette.raised, palette.selection}) {
            for (const auto& text : texts)
                EXPECT_GE(contrast(text, ground), least)
                    << text.name().toStdString() << " on " << ground.name().toStdString();
            EXPECT_GE(contrast(palette.line, ground), leastOfLine) << ground.name().toStdString();
        }
        EXPECT_GE(contrast(palette.onAccent, palette.accent), least);
        EXPECT_GE(contrast(palette.onRec, palette.rec), least);
        for (const auto& bar : {palette.accent, palette.ok})
            EXPECT_GE(contrast(bar, palette.track), 3) << bar.name().toStdString();
    }
}
