#include "MeetingCore/records/Meeting.h"

#include "MeetingCore/base/Assert.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

namespace varnet {

namespace {

/// Silence of this length, in seconds, ends a turn.
constexpr double turnGap = 2.0;

} // namespace

std::vector<TranscriptTurn> TranscriptTurn::group(std::span<const TranscriptWord> words, std::string_view source,
                                                  double offset) {
    std::vector<TranscriptTurn> turns;
    for (const TranscriptWord& word : words) {
        const std::string label =
            word.speaker ? std::string(source) + ' ' + std::to_string(*word.speaker) : std::string("Unassigned");
        if (!turns.empty() && turns.back().speaker == label && offset + word.start - turns.back().end < turnGap) {
            TranscriptTurn& turn = turns.back();
            turn.originalText.append(1, ' ').append(word.word);
            turn.end = std::max(turn.end, word.end + offset);
        } else {
            turns.push_back({.start = word.start + offset,
                             .end = word.end + offset,
                             .speaker = label,
                             .originalText = word.word,
                             .editedText = std::nullopt});
        }
    }
    return turns;
}

Meeting Meeting::make(std::string title) {
    Meeting meeting;
    meeting.title = std::move(title);
    meeting.createdAt = Date::now();
    return meeting;
}

std::string Meeting::timestamp(double seconds) {
    constexpr double limit = 0x1p63;
    VARNET_ASSERT(seconds >= -limit && seconds < limit); // false for NaN too
    const std::int64_t whole = std::max<std::int64_t>(0, static_cast<std::int64_t>(seconds));
    char text[32];
    std::snprintf(text, sizeof text, "%02" PRId64 ":%02" PRId64, whole / 60, whole % 60);
    return text;
}

std::string Meeting::speakerName(const std::string& label) const {
    if (!speakerNames)
        return label;
    const auto found = speakerNames->find(label);
    return found == speakerNames->end() ? label : found->second;
}

} // namespace varnet
