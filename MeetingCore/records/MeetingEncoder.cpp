#include "MeetingCore/records/MeetingEncoder.h"

#include "MeetingCore/base/JsonEncoding.h"
#include "MeetingCore/records/MeetingFields.h"

#include <algorithm>
#include <cmath>

namespace varnet {

namespace {

/// Equality would take a zero for a negative zero, which is written differently.
bool sameSigns(const TranscriptTurn& one, const TranscriptTurn& other) {
    return std::signbit(one.start) == std::signbit(other.start) && std::signbit(one.end) == std::signbit(other.end);
}

} // namespace

std::string_view MeetingEncoder::encode(const Meeting& meeting) {
    JsonWriter writer;
    writer.beginObject();
    json::writeMembers(writer, meeting, JsonRecord<Meeting>::beforeTurns);
    writer.key(JsonRecord<Meeting>::turns.key);
    writer.beginArray();
    const std::string head = writer.takePart();
    m_document.replace(0, m_headSize, head);
    m_headSize = head.size();

    const auto same = [](const EncodedTurn& encoded, const TranscriptTurn& turn) {
        return encoded.turn == turn && sameSigns(encoded.turn, turn);
    };
    const auto [changed, rest] = std::ranges::mismatch(m_turns, meeting.turns, same);
    m_turns.erase(changed, m_turns.end());
    m_document.resize(m_headSize + (m_turns.empty() ? 0 : m_turns.back().end));
    if (!m_turns.empty())
        writer.passElements();
    for (auto turn = rest; turn != meeting.turns.end(); ++turn) {
        writer.element();
        json::writeValue(writer, *turn, JsonRecord<Meeting>::turns.range);
        m_document += writer.takePart();
        m_turns.push_back({*turn, m_document.size() - m_headSize});
    }
    writer.endArray();
    writer.endObject();
    return m_document += writer.finish();
}

} // namespace varnet
