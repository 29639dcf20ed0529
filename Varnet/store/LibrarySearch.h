#pragma once

#include "MeetingCore/records/Meeting.h"
#include "Varnet/async/Task.h"

#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace varnet {

class SearchIndex;

/// The words around the first hit in a transcript, on one line of UTF-8 text.
struct SearchSnippet {
    std::string before; ///< begins with an ellipsis where words were left out
    std::string hit;    ///< as it stands in the transcript
    std::string after;  ///< long enough for a wide row; the row cuts it

    /// Absent when no turn has the words of the query, which is in lower case and not empty.
    static std::optional<SearchSnippet> find(std::string_view query, const Meeting& meeting);

    bool operator==(const SearchSnippet&) const = default;
};

/// Searches a whole list of meetings again and again, as one types: what the index has told stands ready in the order
/// of the list. Main thread; the list and the index must outlive it.
class LibrarySearch {
public:
    LibrarySearch(const std::vector<Meeting>& meetings, SearchIndex& index);

    /// The places in the list of the meetings that SearchIndex::matches, in their order. `query` is in lower case.
    std::vector<std::size_t> find(std::string_view query);
    bool matches(std::string_view query, const Meeting& meeting) const;

    /// The list or a meeting of it has changed. To be called before the next search.
    void forget() { m_texts.clear(); }

    /// Puts into lower case, on the worker, what the index does not hold yet. What changes meanwhile is done when it
    /// is searched. `search` is left alone once the stop is requested.
    static Task<> prepare(LibrarySearch* search, std::stop_token stop);

private:
    const std::vector<Meeting>& m_meetings;
    SearchIndex& m_index;
    std::vector<std::string_view> m_texts; ///< in the order of the list; empty until looked up
};

} // namespace varnet
