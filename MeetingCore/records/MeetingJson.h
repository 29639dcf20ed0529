#pragma once

#include "MeetingCore/records/Meeting.h"

#include <span>
#include <string>
#include <string_view>

namespace varnet {

class JsonParser;

/// The document of a meeting: pretty-printed, keys in ascending order, absent fields left out, always valid UTF-8 (bad
/// bytes become U+FFFD), numbers such that they read back bit for bit. Throws JsonFailure for a time or a date that
/// decodeMeeting would refuse, so that nothing unreadable is ever stored.
std::string encodeMeeting(const Meeting& meeting);

/// Reads a document that may come from anywhere. Strict: a missing key, a value of the wrong type, a time beyond 10^9
/// seconds on either side of zero, a date outside the years 1 to 9999, text that is not UTF-8, anything that is not
/// JSON, a number that no double holds (1e400), more than 64 MiB, more than 64 levels under an unknown key, and more
/// than a million elements in one list throw JsonFailure. Missing and null optional fields are absent; unknown keys are
/// ignored; of repeated keys the last one counts.
Meeting decodeMeeting(std::string_view json);

/// The same for the document in the parser's buffer, for many documents one after another.
Meeting decodeMeeting(JsonParser& parser);

/// The sources as an array without white space, keys in ascending order: what is hashed and what is measured. Throws
/// JsonFailure for times that cannot be stored.
std::string encodeSources(std::span<const NoteSource> sources);

} // namespace varnet
