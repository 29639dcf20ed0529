#include "MeetingCore/records/Meeting.h"

namespace varnet {

std::string Meeting::markdown() const {
    std::string text = "# " + title + "\n\n" + createdAt.iso8601();
    if (source)
        text += "\n\nSource: " + source->provider + " · " + source->recordID +
                "\nImported: " + source->importedAt.iso8601();
    text += "\n\n## Notes\n\n" + notes;
    if (generatedNotes) {
        text += "\n\n";
        if (generatedNotesAreStale())
            text += "**Draft is outdated: transcript or speaker names changed.**\n\n";
        text += generatedNotes->markdown();
    }
    text += "\n\n## Transcript\n\n";
    for (const TranscriptTurn& turn : turns) {
        if (&turn != &turns.front())
            text += "\n\n";
        text += '[' + timestamp(turn.start) + "] **" + speakerName(turn.speaker) + "**: " + turn.text();
    }
    if (importedContent)
        text += "\n\n## Imported source content\n\n" + *importedContent;
    return text += '\n';
}

} // namespace varnet
