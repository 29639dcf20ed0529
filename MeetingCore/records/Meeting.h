#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/base/Uuid.h"
#include "MeetingCore/records/GeneratedNotes.h"
#include "MeetingCore/records/MeetingSource.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varnet {

/// One timed word as a speech engine reports it; the input of turn building, never stored.
struct TranscriptWord {
    std::string word;
    double start = 0; ///< seconds from the start of the audio that the engine saw; finite
    double end = 0;   ///< seconds, same origin; finite
    std::optional<std::int64_t> speaker;

    bool operator==(const TranscriptWord&) const = default;
};

/// One speaker turn of a transcript.
struct TranscriptTurn {
    Uuid id = Uuid::random();
    double start = 0;         ///< seconds from the start of the meeting's audio; finite
    double end = 0;           ///< seconds; finite
    std::string speaker;      ///< label and key of Meeting::speakerNames, such as "Speaker 1"; not a display name
    std::string originalText; ///< as recognised; edits never change it
    std::optional<std::string> editedText; ///< the user's correction

    /// The correction if there is one, even an empty one, else the recognised text.
    const std::string& text() const { return editedText ? *editedText : originalText; }

    /// Builds turns from words in their order. A new turn begins where the label changes or after a gap of 2.0 seconds
    /// or more. The label is `source`, a blank and the word's speaker number, or "Unassigned"; `offset` (seconds) is
    /// added to all times. Every turn gets a fresh id.
    static std::vector<TranscriptTurn> group(std::span<const TranscriptWord> words, std::string_view source,
                                             double offset);

    bool operator==(const TranscriptTurn&) const = default;
};

/// Everything known about one meeting: one JSON document in a folder of its own.
struct Meeting {
    Uuid id = Uuid::random();
    std::string title;
    Date createdAt;                           ///< the library sorts on it
    std::vector<TranscriptTurn> turns;        ///< in the order of arrival
    std::string notes;                        ///< the user's own
    std::optional<std::string> audioFilename; ///< bare name of the main audio file in the meeting's folder
    std::string status = "Ready";             ///< progress text; see MeetingStatus.h for the vocabulary
    std::optional<std::map<std::string, std::string>> speakerNames; ///< label to display name
    std::optional<MeetingSource> source;
    std::optional<std::string> importedContent;
    std::optional<GeneratedNotes> generatedNotes;
    std::optional<std::vector<std::string>> attendees;

    /// A new record with a fresh id, created now, with the status "Ready".
    static Meeting make(std::string title);

    /// Clock text of a transcript, minutes and seconds ("62:05"), truncated, never negative. `seconds` must be finite
    /// and fit 64 bits; otherwise the program ends.
    static std::string timestamp(double seconds);

    /// The display name of a speaker label: its entry in `speakerNames`, else the label.
    std::string speakerName(const std::string& label) const;

    /// The whole record as a Markdown text: title, notes, draft, transcript and imported content.
    std::string markdown() const;

    /// Whether there is a draft whose transcript or speaker names have changed since. It reads the whole transcript.
    bool generatedNotesAreStale() const;

    bool operator==(const Meeting&) const = default;
};

} // namespace varnet
