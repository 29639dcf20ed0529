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

    /// The title and the texts of the turns in lower case, a line feed between each two. Valid until the text of this
    /// meeting has changed and is asked for again. The first time, the text is put into lower case.
    const std::string& text(const Meeting& meeting);

    /// Whether `text` is there at once.
    bool holds(const Meeting& meeting) const;

    /// Takes a text that was put into lower case elsewhere, for a meeting that had that signature.
    void put(const Uuid& id, std::uint64_t signature, std::string lowerCased);

    /// What is put into lower case: the title and the texts of the turns, a line feed between each two.
    static std::string original(const Meeting& meeting);

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
