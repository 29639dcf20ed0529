#pragma once

#include "MeetingCore/base/Uuid.h"
#include "MeetingCore/records/Meeting.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace varnet {

/// A fingerprint of what a reader sees of a transcript, so that a cache knows when to look again without comparing
/// texts. It is compared within one process only, and never stored.
namespace TranscriptSignature {

/// Hashes the number of turns, the ids of the first and the last, the edits, the speakers' names and the title.
std::uint64_t of(const Meeting& meeting);

} // namespace TranscriptSignature

/// The titles and transcripts of the library in lower case, for searching as one types. Filled on demand. Main thread.
class SearchIndex {
public:
    /// Whether the title or the transcript has the words of the query, in either case and at any place of a word. An
    /// empty query matches everything. The first time, the meeting's text is put into lower case.
    bool matches(std::string_view query, const Meeting& meeting);

    /// The program's one index.
    static SearchIndex& shared();

private:
    struct Entry {
        std::uint64_t signature = 0;
        std::string bytes;
    };

    std::unordered_map<Uuid, Entry> m_entries;
};

} // namespace varnet
