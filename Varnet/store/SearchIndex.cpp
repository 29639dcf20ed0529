#include "Varnet/store/SearchIndex.h"

#include "MeetingCore/base/ByteSearch.h"
#include "MeetingCore/base/Text.h"

#include <array>
#include <bit>
#include <functional>

namespace varnet {

namespace {

class Hasher {
public:
    void add(std::uint64_t value) {
        m_state = (m_state ^ value) * 0x9E3779B97F4A7C15U;
        m_state ^= m_state >> 29;
    }
    void add(const Uuid& id) {
        for (const auto half : std::bit_cast<std::array<std::uint64_t, 2>>(id.bytes))
            add(half);
    }
    void add(const std::string& text) { add(std::hash<std::string>()(text)); }

    std::uint64_t value() const { return m_state; }

private:
    std::uint64_t m_state = 0;
};

} // namespace

std::uint64_t TranscriptSignature::of(const Meeting& meeting) {
    Hasher hasher;
    hasher.add(meeting.turns.size());
    if (!meeting.turns.empty()) {
        hasher.add(meeting.turns.front().id);
        hasher.add(meeting.turns.back().id);
    }
    for (const auto& turn : meeting.turns) {
        if (turn.editedText) {
            hasher.add(turn.id);
            hasher.add(*turn.editedText);
        }
    }
    hasher.add(meeting.speakerNames ? 1 + meeting.speakerNames->size() : 0);
    if (meeting.speakerNames) {
        for (const auto& [label, name] : *meeting.speakerNames) {
            hasher.add(label);
            hasher.add(name);
        }
    }
    hasher.add(meeting.title);
    return hasher.value();
}

bool SearchIndex::matches(std::string_view query, const Meeting& meeting) {
    return query.empty() || findBytes(text(meeting), lowerCased(query)) != std::string::npos;
}

const std::string& SearchIndex::text(const Meeting& meeting) {
    const auto signature = TranscriptSignature::of(meeting);
    auto entry = m_entries.find(meeting.id);
    if (entry == m_entries.end() || entry->second.signature != signature)
        entry = m_entries.insert_or_assign(meeting.id, Entry{signature, lowerCased(original(meeting))}).first;
    return entry->second.bytes;
}

bool SearchIndex::holds(const Meeting& meeting) const {
    const auto entry = m_entries.find(meeting.id);
    return entry != m_entries.end() && entry->second.signature == TranscriptSignature::of(meeting);
}

void SearchIndex::put(const Uuid& id, std::uint64_t signature, std::string lowerCased) {
    m_entries.insert_or_assign(id, Entry{signature, std::move(lowerCased)});
}

std::string SearchIndex::original(const Meeting& meeting) {
    std::size_t size = meeting.title.size();
    for (const auto& turn : meeting.turns)
        size += 1 + turn.text().size();
    std::string text;
    text.reserve(size);
    text += meeting.title;
    for (const auto& turn : meeting.turns)
        (text += '\n') += turn.text();
    return text;
}

SearchIndex& SearchIndex::shared() {
    static SearchIndex index;
    return index;
}

} // namespace varnet
