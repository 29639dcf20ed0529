#pragma once

#include "MeetingCore/notes/IndexedSources.h"
#include "MeetingCore/notes/NotesFailure.h"
#include "MeetingCore/records/GeneratedNotes.h"
#include "MeetingCore/records/Meeting.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The rules by which drafted points are tied to the words of a transcript. The model only proposes: a point stands if
/// its quotes stand in the transcript, literally but for white space. Pure functions; any thread.
///
/// Whoever checks points one by one makes the index of the sources once. The ids of sources that are looked up differ,
/// or the program ends.
namespace varnet::NoteGrounding {

/// The transcript as numbered sources of at most 1800 bytes; a longer turn gives several. A piece is cut between
/// user-perceived characters, and one that is longer by itself stays whole. Blank turns give none.
std::vector<NoteSource> sources(const Meeting& meeting);

/// Groups in order whose JSON is at most `limit` bytes each, apart from a single source that is larger by itself.
/// Throws NotesFailure (emptyTranscript) without sources.
std::vector<std::vector<NoteSource>> chunks(std::span<const NoteSource> sources, std::size_t limit);

/// SHA-256 of the sources' JSON in lower-case hexadecimal: it changes with the text, the names, the times and the
/// turns. Throws JsonFailure for times that cannot be stored.
std::string hash(std::span<const NoteSource> sources);

/// What `chunks` and `hash` give, from one encoding and without a copy.
struct Encoded {
    std::vector<std::span<const NoteSource>> chunks; ///< parts of the sources; none without sources
    std::string hash;
};
/// Throws JsonFailure for times that cannot be stored.
Encoded encoded(std::span<const NoteSource> sources, std::size_t limit);

/// The text with every run of white space as one blank and none at its ends.
std::string normalized(std::string_view text);

/// Where the part first stands in the text, letter for letter; npos where it does not. The time grows with the lengths
/// alone, whatever stands in them.
std::size_t placeOf(std::string_view text, std::string_view part);

/// Owners and deadlines that only say that there is none become absent.
std::vector<NoteItem> normalizeMissingAssignments(std::vector<NoteItem> items);

/// Moves quotes to where their exact words stand: up to `reach` sources away from the one that was named, across up to
/// `maxRun` sources in a row (one quote for each of them then). What stands nowhere stays as it was.
std::vector<NoteItem> repairEvidence(std::vector<NoteItem> items, std::span<const NoteSource> sources, int reach,
                                     int maxRun);
std::vector<NoteItem> repairEvidence(std::vector<NoteItem> items, const IndexedSources& sources, int reach, int maxRun);

/// Throws NotesFailure for the first point that is not carried by its quotes: each quote stands in its source letter
/// for letter, only an action has an owner or a deadline, and the deadline stands in a quote. An owner stands in a
/// quote too, or is the speaker of one that says "I will" or the like; the names are then compared by Unicode's full
/// case folding. Blank owners and deadlines are not carried.
void validate(std::span<const NoteItem> items, std::span<const NoteSource> sources);
void validate(std::span<const NoteItem> items, const IndexedSources& sources);

/// Whether the phrase stands in the text whole, between characters that are neither letters nor digits. Case and
/// white space do not matter. The same as a caseless search with ICU for (?<![\p{L}\p{N}])phrase(?![\p{L}\p{N}]).
bool containsPhrase(std::string_view text, std::string_view phrase);

/// Whether who says these words takes something on: "I will", "I'll" and the like, in any case. The same as a search
/// with ICU for (?i)(?<![\p{L}\p{N}])I(?: will\b|['’]ll\b| am going to\b|['’]m going to\b| commit to\b| take
/// responsibility\b) in the normalized words.
bool isCommitment(std::string_view words);

} // namespace varnet::NoteGrounding
