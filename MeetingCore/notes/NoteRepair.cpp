#include "MeetingCore/base/Text.h"
#include "MeetingCore/notes/NoteGrounding.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <initializer_list>

namespace varnet::NoteGrounding {

namespace {

/// What the dot of a regular expression does not match.
constexpr std::array<std::string_view, 7> lineEnds{"\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029"};

bool skip(std::string_view& text, std::string_view prefix) {
    const bool found = text.starts_with(prefix);
    if (found)
        text.remove_prefix(prefix.size());
    return found;
}

void skipWhiteSpace(std::string_view& text) {
    while (const std::size_t length = leadingWhiteSpace(text))
        text.remove_prefix(length);
}

bool skipDigits(std::string_view& text) {
    std::size_t end = 0;
    while (end < text.size()) {
        std::size_t next = end;
        UChar32 character = U_SENTINEL;
        U8_NEXT(text.data(), next, text.size(), character);
        if (character < 0 || !u_isdigit(character))
            break;
        end = next;
    }
    text.remove_prefix(end);
    return end > 0;
}

/// The quote without a source's id before it and the quotation marks around it: what $1 is for
///     ^\s*S\d+\s*:\s*["“]?(.*?)["”]?\s*$
/// found in one pass, as that pattern takes quadratic time for long white space.
std::string_view withoutLabel(std::string_view quote) {
    std::string_view rest = quote;
    skipWhiteSpace(rest);
    if (!skip(rest, "S") || !skipDigits(rest))
        return quote;
    skipWhiteSpace(rest);
    if (!skip(rest, ":"))
        return quote;
    skipWhiteSpace(rest);
    skip(rest, "\"") || skip(rest, "“");
    while (const std::size_t length = trailingWhiteSpace(rest))
        rest.remove_suffix(length);
    for (const std::string_view mark : {"\"", "”"})
        if (rest.ends_with(mark)) {
            rest.remove_suffix(mark.size());
            break;
        }
    const bool isOneLine =
        std::ranges::none_of(lineEnds, [&](std::string_view end) { return rest.find(end) != std::string_view::npos; });
    return isOneLine ? rest : quote;
}

std::string_view withoutBlanks(std::string_view text) {
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

/// Neighbouring sources with their normalized texts in a row, a blank between any two of them.
class Window {
public:
    explicit Window(std::span<const NoteSource> sources) : m_sources(sources) {
        for (const NoteSource& source : sources) {
            m_begins.push_back(m_joined.size());
            m_joined.append(normalized(source.text)) += ' ';
        }
        m_begins.push_back(m_joined.size());
    }

    std::size_t size() const { return m_sources.size(); }
    bool contains(std::string_view quote) const { return placeOf(m_joined, quote) != std::string::npos; }

    /// The quote cut where one source ends and the next begins, if it stands in the run of so many sources and each of
    /// them has a part of it; else nothing.
    std::vector<NoteEvidence> cut(std::string_view quote, std::size_t start, std::size_t length) const {
        const std::size_t found = placeOf(run(start, length), quote);
        if (found == std::string_view::npos)
            return {};
        const std::size_t begin = m_begins[start] + found;
        const std::size_t end = begin + quote.size();
        std::vector<NoteEvidence> parts;
        for (std::size_t i = start; i < start + length; ++i) {
            const std::size_t from = std::max(begin, m_begins[i]);
            const std::size_t to = std::min(end, m_begins[i + 1] - 1);
            if (from < to)
                if (const auto part = withoutBlanks(std::string_view(m_joined).substr(from, to - from)); !part.empty())
                    parts.push_back({m_sources[i].id, std::string(part)});
        }
        if (parts.size() != length)
            parts.clear();
        return parts;
    }

private:
    std::string_view run(std::size_t start, std::size_t length) const {
        const std::size_t begin = m_begins[start];
        return std::string_view(m_joined).substr(begin, m_begins[start + length] - 1 - begin);
    }

    std::span<const NoteSource> m_sources;
    std::string m_joined;
    std::vector<std::size_t> m_begins; ///< of each text, and where one more would begin
};

/// Looks for the quote in the runs that begin near the named source: the shortest run first, then the nearest.
std::vector<NoteEvidence> searchNearby(std::string_view quote, std::size_t named, std::span<const NoteSource> sources,
                                       std::size_t reach, std::size_t maxRun) {
    const std::size_t first = named - std::min(reach, named);
    const std::size_t last = named + std::min(reach, sources.size() - 1 - named);
    const Window window(sources.subspan(first, std::min(last - first + maxRun, sources.size() - first)));
    if (!window.contains(quote)) // and so none of its runs does
        return {};

    for (std::size_t length = 1; length <= std::min(maxRun, window.size()); ++length) {
        const auto at = [&](std::size_t start) -> std::vector<NoteEvidence> {
            if (start + length > window.size())
                return {};
            return window.cut(quote, start, length);
        };
        const std::size_t middle = named - first;
        for (std::size_t distance = 0; distance <= std::max(middle, last - named); ++distance) {
            if (distance <= middle)
                if (auto parts = at(middle - distance); !parts.empty())
                    return parts;
            if (distance > 0 && named + distance <= last)
                if (auto parts = at(middle + distance); !parts.empty())
                    return parts;
        }
    }
    return {};
}

std::vector<NoteEvidence> repaired(const NoteEvidence& evidence, const IndexedSources& sources, int reach, int maxRun) {
    const std::string quote = normalized(withoutLabel(evidence.quote));
    const auto named = sources.position(evidence.source);
    if (evidence.source.empty() || quote.empty() || !named)
        return {evidence};
    const auto all = sources.all();
    if (placeOf(normalized(all[*named].text), quote) != std::string::npos)
        return {{evidence.source, quote}};
    if (reach < 0 || maxRun < 1)
        return {evidence};
    // No more than there are, so that sums stay small.
    auto parts = searchNearby(quote, *named, all, std::min(all.size(), static_cast<std::size_t>(reach)),
                              std::min(all.size(), static_cast<std::size_t>(maxRun)));
    if (parts.empty())
        return {evidence};
    return parts;
}

} // namespace

std::vector<NoteItem> repairEvidence(std::vector<NoteItem> items, std::span<const NoteSource> sources, int reach,
                                     int maxRun) {
    return repairEvidence(std::move(items), IndexedSources(sources), reach, maxRun);
}

std::vector<NoteItem> repairEvidence(std::vector<NoteItem> items, const IndexedSources& sources, int reach,
                                     int maxRun) {
    for (NoteItem& item : items) {
        std::vector<NoteEvidence> evidence;
        for (const NoteEvidence& one : item.evidence)
            std::ranges::move(repaired(one, sources, reach, maxRun), std::back_inserter(evidence));
        item.evidence = std::move(evidence);
    }
    return items;
}

} // namespace varnet::NoteGrounding
