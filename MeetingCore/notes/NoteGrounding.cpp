#include "MeetingCore/notes/NoteGrounding.h"

#include "MeetingCore/base/Assert.h"
#include "MeetingCore/base/Sha256.h"
#include "MeetingCore/base/Text.h"
#include "MeetingCore/records/MeetingJson.h"

#include <unicode/regex.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <unordered_map>

namespace varnet::NoteGrounding {

namespace {

constexpr std::size_t maximumSourceBytes = 1800;

constexpr std::array<std::string_view, 8> placeholders{"not specified", "not stated", "unknown", "unassigned",
                                                       "unspecified",   "none",       "n/a",     "null"};

using SourcesByID = std::unordered_map<std::string_view, const NoteSource*>;

icu::UnicodeString utf16(const std::string& text) {
    return icu::UnicodeString::fromUTF8(text);
}

/// Whether the character belongs to [\p{L}\p{N}] where case does not matter: those classes, and the iota subscript,
/// which is a mark that has the letter iota as its upper case.
bool isLetterOrNumber(UChar32 character) {
    constexpr UChar32 iotaSubscript = 0x345;
    return (U_GET_GC_MASK(character) & (U_GC_L_MASK | U_GC_N_MASK)) != 0 || character == iotaSubscript;
}

/// Whether a speaker of these words takes something on.
bool isCommitment(const std::string& words) {
    static const std::unique_ptr<const icu::RegexPattern> pattern = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<const icu::RegexPattern> compiled(icu::RegexPattern::compile(
            icu::UnicodeString::fromUTF8(R"((?i)(?<![\p{L}\p{N}])I(?: will\b|['’]ll\b| am going to\b|['’]m going to\b)"
                                         R"(| commit to\b| take responsibility\b))"),
            0, status));
        VARNET_ASSERT(U_SUCCESS(status));
        return compiled;
    }();
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString input = utf16(words);
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(input, status));
    VARNET_ASSERT(U_SUCCESS(status));
    const bool found = matcher->find(status);
    VARNET_ASSERT(U_SUCCESS(status));
    return found;
}

void removePlaceholder(std::optional<std::string>& assignment) {
    if (assignment && std::ranges::find(placeholders, lowerCased(normalized(*assignment))) != placeholders.end())
        assignment.reset();
}

SourcesByID indexed(std::span<const NoteSource> sources) {
    SourcesByID byID;
    for (const NoteSource& source : sources)
        VARNET_ASSERT(byID.emplace(source.id, &source).second);
    return byID;
}

void requireQuote(const NoteEvidence& evidence, const SourcesByID& byID) {
    const auto source = byID.find(evidence.source);
    const std::string quote = normalized(evidence.quote);
    if (source == byID.end() || quote.empty() || normalized(source->second->text).find(quote) == std::string::npos)
        throw NotesFailure(NotesFailure::Kind::invalidEvidence, "quote does not match " + evidence.source);
}

/// Whether a quote names the owner, or the owner says in it that they will do it.
bool isOwnerSupported(const NoteItem& item, const SourcesByID& byID) {
    const std::string owner = normalized(*item.owner);
    return !owner.empty() && std::ranges::any_of(item.evidence, [&](const NoteEvidence& evidence) {
        return containsPhrase(evidence.quote, owner) ||
               (equalIgnoringCase(normalized(byID.at(evidence.source)->speaker), owner) &&
                isCommitment(normalized(evidence.quote)));
    });
}

bool isDueSupported(const NoteItem& item) {
    return !isBlank(*item.due) && std::ranges::any_of(item.evidence, [&](const NoteEvidence& evidence) {
        return containsPhrase(evidence.quote, *item.due);
    });
}

void validateItem(const NoteItem& item, const SourcesByID& byID) {
    if (isBlank(item.text) || item.evidence.empty())
        throw NotesFailure(NotesFailure::Kind::invalidEvidence, "missing claim or citation");
    for (const NoteEvidence& evidence : item.evidence)
        requireQuote(evidence, byID);

    const bool isAction = item.kind == NoteItem::Kind::action;
    if (!isAction && (item.owner || item.due))
        throw NotesFailure(NotesFailure::Kind::unsupportedAssignment, item.text);
    if (item.owner && !isOwnerSupported(item, byID))
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
    // An array is its elements, a comma between any two of them, and its brackets.
    constexpr std::size_t brackets = 2;
    std::size_t size = 0;
    for (const NoteSource& source : sources) {
        const std::size_t alone = encodeSources({&source, 1}).size();
        const std::size_t extended = size + alone - brackets + 1;
        const bool opens = groups.empty() || extended > limit;
        size = opens ? alone : extended;
        if (opens)
            groups.emplace_back();
        groups.back().push_back(source);
    }
    return groups;
}

std::string hash(std::span<const NoteSource> sources) {
    // In parts, so that a long transcript does not stand in memory once more.
    constexpr std::size_t partCount = 32;
    Sha256 digest;
    digest.add("[");
    for (std::size_t begin = 0; begin < sources.size(); begin += partCount) {
        const std::string part = encodeSources(sources.subspan(begin, std::min(partCount, sources.size() - begin)));
        if (begin > 0)
            digest.add(",");
        digest.add(std::string_view(part).substr(1, part.size() - 2)); // without the brackets
    }
    digest.add("]");
    return digest.finish();
}

std::string normalized(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        if (const std::size_t space = leadingWhiteSpace(text)) {
            text.remove_prefix(space);
            continue;
        }
        std::size_t length = 1;
        while (length < text.size() && leadingWhiteSpace(text.substr(length)) == 0)
            ++length;
        if (!result.empty())
            result += ' ';
        result += text.substr(0, length);
        text.remove_prefix(length);
    }
    return result;
}

std::vector<NoteItem> normalizeMissingAssignments(std::vector<NoteItem> items) {
    for (NoteItem& item : items) {
        removePlaceholder(item.owner);
        removePlaceholder(item.due);
    }
    return items;
}

void validate(std::span<const NoteItem> items, std::span<const NoteSource> sources) {
    const SourcesByID byID = indexed(sources);
    for (const NoteItem& item : items)
        validateItem(item, byID);
}

bool containsPhrase(std::string_view text, std::string_view phrase) {
    const icu::UnicodeString input = utf16(normalized(text));
    // Only the phrase is compiled: the classes around it would take a thousand times as long. A start has one match at
    // most, so that one between the wrong neighbours means the next start.
    UErrorCode status = U_ZERO_ERROR;
    icu::RegexMatcher matcher(utf16(normalized(phrase)), input, UREGEX_LITERAL | UREGEX_CASE_INSENSITIVE, status);
    std::int32_t from = 0;
    while (matcher.find(from, status)) {
        const std::int32_t begin = matcher.start(status);
        const std::int32_t end = matcher.end(status);
        if ((begin == 0 || !isLetterOrNumber(input.char32At(begin - 1))) &&
            (end == input.length() || !isLetterOrNumber(input.char32At(end))))
            return true;
        if (begin == input.length())
            break;
        from = input.moveIndex32(begin, 1);
    }
    VARNET_ASSERT(U_SUCCESS(status));
    return false;
}

} // namespace varnet::NoteGrounding
