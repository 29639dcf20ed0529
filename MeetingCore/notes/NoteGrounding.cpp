#include "MeetingCore/notes/NoteGrounding.h"

#include "MeetingCore/base/Assert.h"
#include "MeetingCore/base/Sha256.h"
#include "MeetingCore/base/Text.h"
#include "MeetingCore/records/MeetingJson.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>

namespace varnet::NoteGrounding {

namespace {

constexpr std::size_t maximumSourceBytes = 1800;

constexpr std::array<std::string_view, 8> placeholders{"not specified", "not stated", "unknown", "unassigned",
                                                       "unspecified",   "none",       "n/a",     "null"};

/// Whether all white space inside of the text is single blanks, as in nearly every text of a transcript. No may mean
/// that the text has to be looked at more closely. Both ends are other characters.
bool isPlain(std::string_view text) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    bool odd = false;
    for (std::size_t i = 0; i + 2 < text.size(); ++i) { // vectorised, and so without short cuts
        const unsigned char byte = bytes[i], next = bytes[i + 1], last = bytes[i + 2];
        odd |= (next < ' ') | ((byte == ' ') & (next == ' '));
        // U+0085 and U+00A0, U+1680, U+2000 to U+205F, U+3000
        odd |= ((byte == 0xC2) & ((next == 0x85) | (next == 0xA0))) | ((byte == 0xE1) & (next == 0x9A)) |
               ((byte == 0xE2) & ((last <= 0x8A) | (last >= 0x9F))) | ((byte == 0xE3) & (next == 0x80));
    }
    return !odd;
}

/// SHA-256 of an array in JSON that comes in parts, each an array itself. An array is its elements, a comma between any
/// two of them, and its brackets.
class ArrayHash {
public:
    ArrayHash() { m_hash.add("["); }

    void add(std::string_view part) {
        if (!std::exchange(m_empty, false))
            m_hash.add(",");
        m_hash.add(part.substr(1, part.size() - brackets));
    }

    std::string finish() {
        m_hash.add("]");
        return m_hash.finish();
    }

    static constexpr std::size_t brackets = 2;

private:
    Sha256 m_hash;
    bool m_empty = true;
};

void removePlaceholder(std::optional<std::string>& assignment) {
    if (assignment && std::ranges::find(placeholders, lowerCased(normalized(*assignment))) != placeholders.end())
        assignment.reset();
}

void requireQuote(const NoteEvidence& evidence, const IndexedSources& sources) {
    const NoteSource* source = sources.find(evidence.source);
    const std::string quote = normalized(evidence.quote);
    if (!source || quote.empty() || placeOf(normalized(source->text), quote) == std::string::npos)
        throw NotesFailure(NotesFailure::Kind::invalidEvidence, "quote does not match " + evidence.source);
}

/// Whether a quote names the owner, or the owner says in it that they will do it.
bool isOwnerSupported(const NoteItem& item, const IndexedSources& sources) {
    const std::string owner = normalized(*item.owner);
    return !owner.empty() && std::ranges::any_of(item.evidence, [&](const NoteEvidence& evidence) {
        return containsPhrase(evidence.quote, owner) ||
               (equalIgnoringCase(normalized(sources.find(evidence.source)->speaker), owner) &&
                isCommitment(evidence.quote));
    });
}

bool isDueSupported(const NoteItem& item) {
    return !isBlank(*item.due) && std::ranges::any_of(item.evidence, [&](const NoteEvidence& evidence) {
        return containsPhrase(evidence.quote, *item.due);
    });
}

void validateItem(const NoteItem& item, const IndexedSources& sources) {
    if (isBlank(item.text) || item.evidence.empty())
        throw NotesFailure(NotesFailure::Kind::invalidEvidence, "missing claim or citation");
    for (const NoteEvidence& evidence : item.evidence)
        requireQuote(evidence, sources);

    const bool isAction = item.kind == NoteItem::Kind::action;
    if (!isAction && (item.owner || item.due))
        throw NotesFailure(NotesFailure::Kind::unsupportedAssignment, item.text);
    if (item.owner && !isOwnerSupported(item, sources))
        throw NotesFailure(NotesFailure::Kind::unsupportedAssignment, *item.owner);
    if (item.due && !isDueSupported(item))
        throw NotesFailure(NotesFailure::Kind::unsupportedAssignment, *item.due);
}

} // namespace

std::vector<NoteSource> sources(const Meeting& meeting) {
    std::vector<NoteSource> result;
    result.reserve(meeting.turns.size());
    for (const TranscriptTurn& turn : meeting.turns) {
        std::string_view rest = turn.text();
        if (isBlank(rest))
            continue;
        while (!rest.empty()) {
            const std::size_t length = characterCut(rest, maximumSourceBytes);
            result.push_back({.id = 'S' + std::to_string(result.size() + 1),
                              .turnID = turn.id,
                              .start = turn.start,
                              .end = turn.end,
                              .speaker = meeting.speakerName(turn.speaker),
                              .text = std::string(rest.substr(0, length))});
            rest.remove_prefix(length);
        }
    }
    return result;
}

std::vector<std::vector<NoteSource>> chunks(std::span<const NoteSource> sources, std::size_t limit) {
    if (sources.empty())
        throw NotesFailure(NotesFailure::Kind::emptyTranscript);
    std::vector<std::vector<NoteSource>> groups;
    for (const auto chunk : encoded(sources, limit).chunks)
        groups.emplace_back(chunk.begin(), chunk.end());
    return groups;
}

std::string hash(std::span<const NoteSource> sources) {
    // In parts, so that a long transcript does not stand in memory once more.
    constexpr std::size_t partCount = 32;
    ArrayHash whole;
    for (std::size_t begin = 0; begin < sources.size(); begin += partCount)
        whole.add(encodeSources(sources.subspan(begin, std::min(partCount, sources.size() - begin))));
    return whole.finish();
}

Encoded encoded(std::span<const NoteSource> sources, std::size_t limit) {
    Encoded result;
    ArrayHash whole;
    std::size_t size = 0; // of the last group's array
    for (const NoteSource& source : sources) {
        const std::string alone = encodeSources({&source, 1});
        whole.add(alone);
        const std::size_t extended = size + alone.size() - ArrayHash::brackets + 1;
        if (result.chunks.empty() || extended > limit) {
            result.chunks.emplace_back(&source, 1);
            size = alone.size();
        } else {
            result.chunks.back() = {result.chunks.back().data(), result.chunks.back().size() + 1};
            size = extended;
        }
    }
    result.hash = whole.finish();
    return result;
}

std::string normalized(std::string_view text) {
    while (const std::size_t length = leadingWhiteSpace(text))
        text.remove_prefix(length);
    while (const std::size_t length = trailingWhiteSpace(text))
        text.remove_suffix(length);
    if (isPlain(text))
        return std::string(text);
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t space = leadingWhiteSpace(text);
        if (space == 0)
            result += text.front();
        else if (result.back() != ' ')
            result += ' ';
        text.remove_prefix(std::max<std::size_t>(space, 1));
    }
    return result;
}

std::size_t placeOf(std::string_view text, std::string_view part) {
    const void* found = memmem(text.data(), text.size(), part.data(), part.size());
    return found ? static_cast<std::size_t>(static_cast<const char*>(found) - text.data()) : std::string_view::npos;
}

std::vector<NoteItem> normalizeMissingAssignments(std::vector<NoteItem> items) {
    for (NoteItem& item : items) {
        removePlaceholder(item.owner);
        removePlaceholder(item.due);
    }
    return items;
}

void validate(std::span<const NoteItem> items, std::span<const NoteSource> sources) {
    validate(items, IndexedSources(sources));
}

void validate(std::span<const NoteItem> items, const IndexedSources& sources) {
    for (const NoteItem& item : items)
        validateItem(item, sources);
}

} // namespace varnet::NoteGrounding
