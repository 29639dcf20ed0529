#include "Varnet/models/Palette.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

using namespace varnet;

namespace {

using Vector = std::array<double, 3>;

Vector linear(const QColor& color) {
    const auto channel = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return {channel(color.redF()), channel(color.greenF()), channel(color.blueF())};
}

double luminance(const QColor& color) {
    const auto [r, g, b] = linear(color);
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
}

/// The contrast ratio of the Web Content Accessibility Guidelines.
double contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one), b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// CIELAB of a linear sRGB colour, white point D65.
Vector lab(const Vector& rgb) {
    const auto [r, g, b] = rgb;
    const auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116; };
    const double x = f((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.95047);
    const double y = f(0.2126 * r + 0.7152 * g + 0.0722 * b);
    const double z = f((0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

using Matrix = std::array<Vector, 3>;

/// Full colour vision, then the simulations of Machado, Oliveira and Fernandes (2009) at full severity.
const std::vector<std::pair<const char*, Matrix>> visions{
    {"full", {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
    {"protanopia",
     {{{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}}},
    {"deuteranopia",
     {{{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}}},
    {"tritanopia",
     {{{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}}},
};

Vector seen(const Matrix& vision, const QColor& color) {
    const auto rgb = linear(color);
    Vector result{};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            result[row] += vision[row][column] * rgb[column];
        result[row] = std::clamp(result[row], 0.0, 1.0);
    }
    return lab(result);
}

struct PaletteTest : testing::TestWithParam<const Palette*> {};

} // namespace

TEST_P(PaletteTest, EveryTextIsReadableOnEveryGround) {
    const auto& palette = *GetParam();
    std::vector<QColor> texts{palette.text, palette.secondary, palette.faint, palette.accent,
                              palette.rec,  palette.amber,     palette.ok};
    texts.insert(texts.end(), palette.speakers.begin(), palette.speakers.end());
    for (const auto& ground : {palette.window, palette.surface, palette.raised, palette.selection})
        for (const auto& text : texts)
            EXPECT_GE(contrast(text, ground), 4.5)
                << text.name().toStdString() << " on " << ground.name().toStdString();
    EXPECT_GE(contrast(palette.onAccent, palette.accent), 4.5);
    EXPECT_GE(contrast(palette.onRec, palette.rec), 4.5);
}

TEST_P(PaletteTest, SpeakersStayApartForColourBlindReaders) {
    const auto& speakers = GetParam()->speakers;
    for (const auto& [vision, matrix] : visions)
        for (std::size_t one = 0; one < speakers.size(); ++one)
            for (std::size_t other = one + 1; other < speakers.size(); ++other) {
                const auto a = seen(matrix, speakers[one]), b = seen(matrix, speakers[other]);
                EXPECT_GE(std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]), 15)
                    << "speakers " << one << " and " << other << ", vision " << vision;
            }
}

INSTANTIATE_TEST_SUITE_P(LightAndDark, PaletteTest, testing::Values(&Palette::light(), &Palette::dark()));
