#include "Varnet/store/LibrarySearch.h"

#include "MeetingCore/base/ByteSearch.h"
#include "MeetingCore/base/Text.h"
#include "Varnet/async/Worker.h"
#include "Varnet/store/SearchIndex.h"

#include <unicode/utf8.h>

#include <algorithm>

namespace varnet {

namespace {

constexpr std::size_t npos = std::string_view::npos;

/// Bytes of text that are copied for the worker at a time, a millisecond's work for the main thread.
constexpr std::size_t sliceBytes = std::size_t{1} << 20;

/// So few that handing them over would take longer than putting them into lower case.
constexpr std::size_t fewBytes = std::size_t{1} << 16;

struct Prepared {
    Uuid id;
    std::uint64_t signature = 0;
    std::string text;
};

using Slice = std::vector<Prepared>;

/// The next meetings from `place` on that the index does not hold, in their own letters; moves the place on.
Slice nextSlice(const std::vector<Meeting>& meetings, const SearchIndex& index, std::size_t& place,
                std::size_t& bytes) {
    Slice slice;
    for (bytes = 0; place < meetings.size() && bytes < sliceBytes; ++place) {
        const auto& meeting = meetings[place];
        if (index.holds(meeting))
            continue;
        slice.push_back({meeting.id, TranscriptSignature::of(meeting), SearchIndex::original(meeting)});
        bytes += slice.back().text.size();
    }
    return slice;
}

Slice inLowerCase(Slice slice) {
    for (auto& meeting : slice)
        meeting.text = lowerCased(meeting.text);
    return slice;
}

bool continuesCharacter(char byte) {
    return U8_IS_TRAIL(static_cast<std::uint8_t>(byte));
}

std::string onOneLine(std::string_view text) {
    std::string line(text);
    std::ranges::replace_if(line, [](char byte) { return byte == '\n' || byte == '\r' || byte == '\t'; }, ' ');
    return line;
}

/// The last words before a hit, from the start of a word if there is one.
std::string wordsBefore(std::string_view text) {
    constexpr std::size_t most = 48;
    if (text.size() <= most)
        return onOneLine(text);
    std::size_t begin = text.size() - most;
    while (begin < text.size() && continuesCharacter(text[begin]))
        ++begin;
    if (const auto blank = text.find(' ', begin); blank != npos && blank + 1 < text.size())
        begin = blank + 1;
    return "…" + onOneLine(text.substr(begin));
}

std::string wordsAfter(std::string_view text) {
    constexpr std::size_t most = 240;
    if (text.size() <= most)
        return onOneLine(text);
    std::size_t end = most;
    while (end > 0 && continuesCharacter(text[end]))
        --end;
    return onOneLine(text.substr(0, end)) + "…";
}

} // namespace

std::optional<SearchSnippet> SearchSnippet::find(std::string_view query, const Meeting& meeting) {
    for (const auto& turn : meeting.turns) {
        const std::string_view text = turn.text();
        const auto place = findBytes(lowerCased(text), query);
        if (place == npos)
            continue;
        OriginalPlaces original(text);
        const auto begin = original.of(place), end = original.of(place + query.size());
        return SearchSnippet{wordsBefore(text.substr(0, begin)), onOneLine(text.substr(begin, end - begin)),
                             wordsAfter(text.substr(end))};
    }
    return {};
}

LibrarySearch::LibrarySearch(const std::vector<Meeting>& meetings, SearchIndex& index)
    : m_meetings(meetings), m_index(index) {}

std::vector<std::size_t> LibrarySearch::find(std::string_view query) {
    std::vector<std::size_t> places;
    m_texts.resize(m_meetings.size());
    for (std::size_t place = 0; place < m_meetings.size(); ++place) {
        auto& text = m_texts[place];
        if (!text.data())
            text = m_index.text(m_meetings[place]);
        if (findBytes(text, query) != npos)
            places.push_back(place);
    }
    return places;
}

bool LibrarySearch::matches(std::string_view query, const Meeting& meeting) const {
    return query.empty() || findBytes(m_index.text(meeting), query) != npos;
}

Task<> LibrarySearch::prepare(LibrarySearch* search, std::stop_token stop) {
    for (std::size_t place = 0, bytes = 0; !stop.stop_requested() && place < search->m_meetings.size();) {
        auto slice = nextSlice(search->m_meetings, search->m_index, place, bytes);
        if (bytes <= fewBytes) {
            slice = inLowerCase(std::move(slice));
        } else {
            slice = co_await onWorker([work = std::move(slice)]() mutable { return inLowerCase(std::move(work)); });
            if (stop.stop_requested())
                co_return;
        }
        for (auto& meeting : slice)
            search->m_index.put(meeting.id, meeting.signature, std::move(meeting.text));
        search->forget(); // an entry that is looked at may be another one now
    }
}

} // namespace varnet
