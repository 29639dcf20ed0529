#pragma once

#include "MeetingCore/base/Uuid.h"
#include "MeetingCore/records/Meeting.h"

#include <cstdint>
#include <string>
#include <unordered_map>

namespace varnet {

/// Whether drafts are older than their transcripts: finding out reads the whole transcript. Main thread.
class StalenessCache {
public:
    /// Whether there is a draft whose transcript or speaker names have changed since it was written.
    bool isStale(const Meeting& meeting);

    /// The program's one cache.
    static StalenessCache& shared();

private:
    struct Entry {
        std::uint64_t signature = 0;
        std::string notesHash; ///< the transcript that the draft was written from
        bool stale = false;
    };

    std::unordered_map<Uuid, Entry> m_entries;
};

} // namespace varnet
