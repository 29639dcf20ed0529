#pragma once

#include "MeetingCore/base/Json.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

/// Records to and from JSON by one table of their fields: JsonDecoding.h and JsonEncoding.h work through the tables.
///
///     template <>
///     struct JsonRecord<NoteEvidence> {
///         static constexpr std::tuple fields{JsonField{"quote", &NoteEvidence::quote},
///                                            JsonField{"source", &NoteEvidence::source}};
///     };
///
/// The keys stand in ascending order. A field is optional exactly when its type is std::optional: its key may be
/// missing or null and is not written when absent; any other key must be there. Unknown and repeated keys are allowed,
/// the last one counts. Every value of the document is looked at, so one that is not JSON anywhere is refused. Reading
/// and writing refuse the same numbers; both throw JsonFailure.
namespace varnet {

/// Both ends belong to it.
struct JsonRange {
    double lowest;
    double highest;

    constexpr bool holds(double value) const { return value >= lowest && value <= highest; }
};

/// Times in seconds: far beyond any meeting, near enough for the clock text and for exact arithmetic.
inline constexpr JsonRange anyTime{-1e9, 1e9};
/// Times on a wire, which start with the audio.
inline constexpr JsonRange audioTime{0, 1e9};
/// The first instant of the year 1 to the last second of the year 9999 in UTC.
inline constexpr JsonRange dateRange{-63113904000, 252423993599};

template <class Record, class Value>
struct JsonField {
    std::string_view key;
    Value Record::* member;
    JsonRange range; ///< of its numbers that are seconds

    constexpr JsonField(std::string_view fieldKey, Value Record::* fieldMember, JsonRange fieldRange = anyTime)
        : key(fieldKey), member(fieldMember), range(fieldRange) {}
};

/// To be specialised with `fields`, and with `blank()` where the default value is expensive.
template <class Record>
struct JsonRecord;

/// To be specialised with `names`, an array of texts by enumerator.
template <class Enumeration>
struct JsonNames;

namespace json {

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;
template <class T>
inline constexpr bool isVector = false;
template <class T>
inline constexpr bool isVector<std::vector<T>> = true;
template <class T>
inline constexpr bool isMap = false;
template <class T>
inline constexpr bool isMap<std::map<std::string, T>> = true;

/// `value`, or a JsonFailure if it is not in the range.
inline double checkedNumber(double value, const JsonRange& range) {
    if (!range.holds(value)) // also what is not a number
        throw JsonFailure("a time is out of range");
    return value;
}

} // namespace json

} // namespace varnet
