#include "MeetingCore/notes/NoteGrounding.h"
#include "MeetingCore/records/Meeting.h"

namespace varnet {

// Defined here and not beside the record, which knows nothing of the grounding.
bool Meeting::generatedNotesAreStale() const {
    if (!generatedNotes)
        return false;
    try {
        return NoteGrounding::hash(NoteGrounding::sources(*this)) != generatedNotes->transcriptHash;
    } catch (const std::exception&) {
        return true;
    }
}

} // namespace varnet
