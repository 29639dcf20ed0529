#include "Varnet/models/EngineLine.h"

#include "Varnet/engines/EngineState.h"
#include "Varnet/models/Text.h"
#include "Varnet/models/Theme.h"

namespace varnet {

EngineLine EngineLine::of(const EngineState& state) {
    using Kind = EngineState::Kind;
    const auto line = [&](const QString& words, Theme::Tone tone) {
        return EngineLine{words, static_cast<int>(tone), toQString(state.text)};
    };
    switch (state.kind) {
    case Kind::ready:
        return line(tr("Ready"), Theme::Tone::ok);
    case Kind::missing:
        return line(tr("Not installed"), Theme::Tone::amber);
    case Kind::failed:
        return line(tr("Didn't start"), Theme::Tone::rec);
    case Kind::unknown:
        return line(tr("Checking"), Theme::Tone::faint);
    case Kind::starting:
        return line(tr("Starting"), Theme::Tone::amber);
    case Kind::stopped:
        return line(tr("Off"), Theme::Tone::faint);
    }
    return {};
}

} // namespace varnet
