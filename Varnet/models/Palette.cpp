#include "Varnet/models/Palette.h"

namespace varnet {

const Palette& Palette::light() {
    static const Palette palette{
        .window = QColor(0xF4F4F2),
        .surface = QColor(0xFFFFFF),
        .raised = QColor(0xF7F7F5),
        .selection = QColor(0xE3EAF8),
        .line = QColor(0xE1E1DD),
        .track = QColor(0xE1E1DD),
        .text = QColor(0x1B1D21),
        .secondary = QColor(0x50545B),
        .faint = QColor(0x646970),
        .accent = QColor(0x2A5BC7),
        .rec = QColor(0xC02537),
        .amber = QColor(0x865200),
        .ok = QColor(0x1A6B3E),
        .onAccent = QColor(0xFFFFFF),
        .onRec = QColor(0xFFFFFF),
        .speakers = {QColor(0x053990), QColor(0x95580E), QColor(0x29746E), QColor(0x62125C), QColor(0x534006),
                     QColor(0x7230F0), QColor(0x970B3F), QColor(0x123313)},
    };
    return palette;
}

const Palette& Palette::dark() {
    static const Palette palette{
        .window = QColor(0x17181B),
        .surface = QColor(0x1D1F22),
        .raised = QColor(0x26292D),
        .selection = QColor(0x29364D),
        .line = QColor(0x34383D),
        .track = QColor(0x34383D),
        .text = QColor(0xEDEEF0),
        .secondary = QColor(0xB4B9C0),
        .faint = QColor(0x9BA1AA),
        .accent = QColor(0x8CB2FF),
        .rec = QColor(0xFF8088),
        .amber = QColor(0xE6B04E),
        .ok = QColor(0x70CB97),
        .onAccent = QColor(0x10151F),
        .onRec = QColor(0x1F0A0C),
        .speakers = {QColor(0xC2D1FD), QColor(0xF47F3B), QColor(0x06CE8D), QColor(0xE087BF), QColor(0xF3C810),
                     QColor(0xCB91F6), QColor(0xEED2DD), QColor(0x9AEE7A)},
    };
    return palette;
}

const Palette& Palette::highContrastLight() {
    static const Palette palette{
        .window = QColor(0xFFFFFF),
        .surface = QColor(0xFFFFFF),
        .raised = QColor(0xF0F0F0),
        .selection = QColor(0xD4E3FF),
        .line = QColor(0x555555),
        .track = QColor(0xD0D0D0),
        .text = QColor(Qt::black),
        .secondary = QColor(0x2B2B2B),
        .faint = QColor(0x3B3B3B),
        .accent = QColor(0x0A3A9E),
        .rec = QColor(0x8C0B1C),
        .amber = QColor(0x5A3600),
        .ok = QColor(0x0B4A26),
        .onAccent = QColor(0xFFFFFF),
        .onRec = QColor(0xFFFFFF),
        .speakers = {QColor(0x0B00EE), QColor(0x562707), QColor(0x034940), QColor(0x90004F), QColor(0x5501C1),
                     QColor(0x713700), QColor(0x6A0494), QColor(0x42256E)},
    };
    return palette;
}

const Palette& Palette::highContrastDark() {
    static const Palette palette{
        .window = QColor(Qt::black),
        .surface = QColor(Qt::black),
        .raised = QColor(0x1C1C1C),
        .selection = QColor(0x12305F),
        .line = QColor(0xB0B0B0),
        .track = QColor(0x3A3A3A),
        .text = QColor(0xFFFFFF),
        .secondary = QColor(0xE6E6E6),
        .faint = QColor(0xD0D0D0),
        .accent = QColor(0xB3CEFF),
        .rec = QColor(0xFFA8AD),
        .amber = QColor(0xFFD069),
        .ok = QColor(0x8CE8B0),
        .onAccent = QColor(Qt::black),
        .onRec = QColor(Qt::black),
        .speakers = {QColor(0xF1A2FF), QColor(0xBDCD3B), QColor(0x6AFFCB), QColor(0xFFC5FF), QColor(0x55E690),
                     QColor(0xD1EA1A), QColor(0x90CBBE), QColor(0xA7FC8F)},
    };
    return palette;
}

} // namespace varnet
