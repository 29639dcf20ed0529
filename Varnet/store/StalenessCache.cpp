#include "Varnet/store/StalenessCache.h"

#include "Varnet/store/SearchIndex.h"

namespace varnet {

bool StalenessCache::isStale(const Meeting& meeting) {
    if (!meeting.generatedNotes)
        return false;
    const auto signature = TranscriptSignature::of(meeting);
    const auto& hash = meeting.generatedNotes->transcriptHash;
    const auto known = m_entries.find(meeting.id);
    if (known != m_entries.end() && known->second.signature == signature && known->second.notesHash == hash)
        return known->second.stale;
    const bool stale = meeting.generatedNotesAreStale();
    m_entries.insert_or_assign(meeting.id, Entry{signature, hash, stale});
    return stale;
}

StalenessCache& StalenessCache::shared() {
    static StalenessCache cache;
    return cache;
}

} // namespace varnet
