// The rules of text and of grounding against plain ones: full walks, whole patterns, growing groups.
// The input is fields separated by U+001F. Two fields are a quote and an owner, each further one is a turn; a turn that
// begins with U+001E and one more byte is repeated that often, so that turns get long.

#include "MeetingCore/base/Assert.h"
#include "MeetingCore/base/Text.h"
#include "MeetingCore/notes/NoteGrounding.h"
#include "MeetingCore/records/MeetingJson.h"

#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/regex.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace {

using namespace varnet;

constexpr std::size_t maximumSourceBytes = 1800;
constexpr std::size_t maximumTurnBytes = 4'000;

icu::UnicodeString utf16(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::vector<std::string> fieldsOf(std::string_view input) {
    std::vector<std::string> fields(1);
    for (const char byte : input) {
        if (byte == '\x1F')
            fields.emplace_back();
        else
            fields.back() += byte;
    }
    fields.resize(std::clamp<std::size_t>(fields.size(), 2, 7));
    for (std::string& field : fields)
        if (field.size() > 2 && field[0] == '\x1E') {
            const std::string unit = field.substr(2);
            for (int count = static_cast<unsigned char>(field[1]); count > 1 && field.size() < maximumTurnBytes;
                 --count)
                field += unit;
            field.erase(0, 2);
        }
    return fields;
}

void checkLowerCase(const std::string& text) {
    std::string whole;
    icu::StringByteSink<std::string> sink(&whole);
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8ToLower("", 0, text, sink, nullptr, status);
    VARNET_ASSERT(U_SUCCESS(status) && lowerCased(text) == whole);
}

void checkNormalized(const std::string& text) {
    const std::string normal = NoteGrounding::normalized(text);
    VARNET_ASSERT(normal.size() <= text.size() && NoteGrounding::normalized(normal) == normal);
    VARNET_ASSERT(normal == trimmed(normal) && normal.find("  ") == std::string::npos);
    VARNET_ASSERT(normal.empty() == isBlank(text));
    std::string letters;
    for (std::size_t at = 0; at < text.size(); ++at)
        if (const std::size_t space = leadingWhiteSpace(std::string_view(text).substr(at)))
            at += space - 1;
        else
            letters += text[at];
    VARNET_ASSERT(letters == [&] {
        std::string rest = normal;
        std::erase(rest, ' ');
        return rest;
    }());
}

/// The pieces of a walk over the whole text, one user-perceived character at a time.
std::vector<std::string> walked(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    static const std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText source = UTEXT_INITIALIZER;
    utext_openUTF8(&source, text.data(), static_cast<std::int64_t>(text.size()), &status);
    iterator->setText(&source, status);
    VARNET_ASSERT(U_SUCCESS(status));
    std::vector<std::string> pieces(1);
    std::int32_t begin = 0;
    for (std::int32_t end = iterator->next(); end != icu::BreakIterator::DONE; begin = end, end = iterator->next()) {
        const auto length = static_cast<std::size_t>(end - begin);
        if (!pieces.back().empty() && pieces.back().size() + length > maximumSourceBytes)
            pieces.emplace_back();
        pieces.back().append(text, static_cast<std::size_t>(begin), length);
    }
    utext_close(&source);
    return pieces;
}

void checkSources(const Meeting& meeting, const std::vector<NoteSource>& sources) {
    std::size_t next = 0;
    for (const TranscriptTurn& turn : meeting.turns) {
        if (isBlank(turn.text()))
            continue;
        for (const std::string& piece : walked(turn.text())) {
            VARNET_ASSERT(next < sources.size() && sources[next].text == piece && sources[next].turnID == turn.id);
            ++next;
            VARNET_ASSERT(sources[next - 1].id == "S" + std::to_string(next));
        }
    }
    VARNET_ASSERT(next == sources.size());
}

void checkChunks(const std::vector<NoteSource>& sources, std::size_t limit) {
    if (sources.empty())
        return;
    std::vector<std::vector<NoteSource>> groups;
    std::vector<NoteSource> group;
    for (const NoteSource& source : sources) {
        group.push_back(source);
        if (group.size() > 1 && encodeSources(group).size() > limit) {
            group.pop_back();
            groups.push_back(std::exchange(group, {source}));
        }
    }
    groups.push_back(group);
    VARNET_ASSERT(NoteGrounding::chunks(sources, limit) == groups);
    VARNET_ASSERT(NoteGrounding::hash(sources).size() == 64);
}

void checkPhrase(const std::string& text, const std::string& phrase) {
    icu::UnicodeString pattern = UNICODE_STRING_SIMPLE("(?<![\\p{L}\\p{N}])");
    const icu::UnicodeString literal = utf16(NoteGrounding::normalized(phrase));
    for (std::int32_t i = 0; i < literal.length(); ++i) {
        if (literal[i] < 0x80 && !u_isalnum(literal[i]))
            pattern += u'\\';
        pattern += literal[i];
    }
    pattern += UNICODE_STRING_SIMPLE("(?![\\p{L}\\p{N}])");
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString input = utf16(NoteGrounding::normalized(text));
    icu::RegexMatcher matcher(pattern, input, UREGEX_CASE_INSENSITIVE, status);
    const bool found = matcher.find(status);
    VARNET_ASSERT(U_SUCCESS(status) && NoteGrounding::containsPhrase(text, phrase) == found);
}

std::string cleaned(const std::string& quote) {
    UErrorCode status = U_ZERO_ERROR;
    static const std::unique_ptr<icu::RegexPattern> pattern(
        icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(R"(^\s*S\d+\s*:\s*["“]?(.*?)["”]?\s*$)"), 0, status));
    const icu::UnicodeString input = utf16(quote);
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(input, status));
    std::string result;
    matcher->replaceAll(UNICODE_STRING_SIMPLE("$1"), status).toUTF8String(result);
    VARNET_ASSERT(U_SUCCESS(status));
    return NoteGrounding::normalized(result);
}

void checkRepair(const std::vector<NoteSource>& sources, const NoteEvidence& evidence) {
    const auto textOf = [&](const std::string& id) {
        const auto found = std::ranges::find(sources, id, &NoteSource::id);
        return found == sources.end() ? std::string() : NoteGrounding::normalized(found->text);
    };
    NoteItem item{NoteItem::Kind::summary, "Claim", {}, {}, {evidence}};
    const auto parts = NoteGrounding::repairEvidence({item}, sources, 3, 4)[0].evidence;
    const std::string quote = cleaned(evidence.quote);
    if (!quote.empty() && textOf(evidence.source).find(quote) != std::string::npos) {
        VARNET_ASSERT(parts == std::vector<NoteEvidence>({{evidence.source, quote}}));
    } else if (parts != std::vector{evidence}) {
        std::string joined;
        for (const NoteEvidence& part : parts) {
            VARNET_ASSERT(!part.quote.empty() && textOf(part.source).find(part.quote) != std::string::npos);
            joined += (joined.empty() ? "" : " ") + part.quote;
        }
        VARNET_ASSERT(joined == quote && parts.size() <= 4);
    }

    item.evidence = parts;
    const bool carried = std::ranges::all_of(parts, [&](const NoteEvidence& part) {
        const std::string words = NoteGrounding::normalized(part.quote);
        return !words.empty() && textOf(part.source).find(words) != std::string::npos;
    });
    bool stands = true;
    try {
        NoteGrounding::validate({&item, 1}, sources);
    } catch (const NotesFailure&) {
        stands = false;
    }
    VARNET_ASSERT(stands == carried);
}

/// Whatever the model says, it is accepted or refused with the one failure.
void checkAnyAnswer(const std::vector<NoteSource>& sources, const NoteEvidence& evidence, const std::string& owner) {
    auto items = NoteGrounding::normalizeMissingAssignments(
        {{NoteItem::Kind::action, "Claim", owner, owner, {evidence, evidence}}});
    items = NoteGrounding::repairEvidence(std::move(items), sources, 3, 4);
    try {
        NoteGrounding::validate(items, sources);
        const auto named = [&](const NoteEvidence& part) { return NoteGrounding::containsPhrase(part.quote, owner); };
        VARNET_ASSERT(!items[0].due || std::ranges::any_of(items[0].evidence, named));
    } catch (const NotesFailure&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> fields = fieldsOf(input);
    for (const std::string& field : fields) {
        checkLowerCase(field);
        checkNormalized(field);
    }
    Meeting meeting;
    for (std::size_t i = 2; i < fields.size(); ++i)
        meeting.turns.push_back(
            {.start = 1, .end = 2, .speaker = fields[i % 2], .originalText = fields[i], .editedText = {}});
    const auto sources = NoteGrounding::sources(meeting);
    checkSources(meeting, sources);
    const std::size_t seed = std::hash<std::string_view>()(input);
    checkChunks(sources, seed % 8'000);

    const std::string& quote = fields[0].size() < 4'000 ? fields[0] : fields[0].erase(4'000);
    // The whole pattern takes milliseconds to compile.
    if (seed % 32 == 0)
        checkPhrase(quote, fields[1]);
    else
        NoteGrounding::containsPhrase(quote, fields[1]);
    const NoteEvidence evidence{"S" + std::to_string(1 + seed % (sources.size() + 1)), quote};
    if (validUtf8(quote) == quote)
        checkRepair(sources, evidence);
    checkAnyAnswer(sources, evidence, fields[1]);
    return 0;
}
