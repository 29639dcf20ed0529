#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/base/Json.h"
#include "MeetingCore/base/Uuid.h"

#include <simdjson.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// Records to and from JSON by one table of their fields. Only sources include this header.
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

/// Looks at every part of a value that nobody wants.
void skip(simdjson::ondemand::value value, int depthLeft = JsonLimits::maximumDepth);

double readNumber(simdjson::ondemand::value value, const JsonRange& range);

Uuid readUuid(simdjson::ondemand::value value);

/// `value`, or a JsonFailure if it is not in the range.
double checkedNumber(double value, const JsonRange& range);

void checkElementCount(std::size_t count);

[[noreturn]] void failField(std::string_view key, std::string_view complaint);

template <class Enumeration>
Enumeration readName(std::string_view name) {
    const auto& names = JsonNames<Enumeration>::names;
    for (std::size_t index = 0; index < names.size(); ++index)
        if (names[index] == name)
            return static_cast<Enumeration>(index);
    throw simdjson::simdjson_error(simdjson::INCORRECT_TYPE);
}

template <class Record>
Record readRecord(simdjson::ondemand::object object);

template <class T>
T readValue(simdjson::ondemand::value value, const JsonRange& range) {
    if constexpr (std::is_same_v<T, std::string>) {
        return std::string(value.get_string().value());
    } else if constexpr (std::is_same_v<T, bool>) {
        return value.get_bool();
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
        return value.get_int64();
    } else if constexpr (std::is_same_v<T, double>) {
        return readNumber(value, range);
    } else if constexpr (std::is_same_v<T, Date>) {
        return {readNumber(value, dateRange)};
    } else if constexpr (std::is_same_v<T, Uuid>) {
        return readUuid(value);
    } else if constexpr (std::is_enum_v<T>) {
        return readName<T>(value.get_string());
    } else if constexpr (isOptional<T>) {
        if (value.is_null())
            return std::nullopt;
        return readValue<typename T::value_type>(value, range);
    } else if constexpr (isVector<T>) {
        T elements;
        simdjson::ondemand::array array = value.get_array();
        for (simdjson::ondemand::value element : array) {
            checkElementCount(elements.size());
            elements.push_back(readValue<typename T::value_type>(element, range));
        }
        return elements;
    } else if constexpr (isMap<T>) {
        T entries;
        simdjson::ondemand::object object = value.get_object();
        for (simdjson::ondemand::field field : object) {
            checkElementCount(entries.size());
            std::string key(field.unescaped_key().value());
            entries.insert_or_assign(std::move(key), readValue<typename T::mapped_type>(field.value(), range));
        }
        return entries;
    } else {
        return readRecord<T>(value.get_object());
    }
}

template <class Record>
Record blankRecord() {
    if constexpr (requires { JsonRecord<Record>::blank(); })
        return JsonRecord<Record>::blank();
    else
        return Record{};
}

/// Reads the value into the field with this key. Gives the field's place in the table, or the table's size if no field
/// has the key.
template <class Record>
std::size_t readField(Record& record, std::string_view key, simdjson::ondemand::value value) {
    std::size_t place = 0;
    std::apply(
        [&](const auto&... field) {
            const auto tryField = [&]<class Value>(const JsonField<Record, Value>& candidate) {
                if (candidate.key != key)
                    return false;
                record.*candidate.member = readValue<Value>(value, candidate.range);
                return true;
            };
            (void)((tryField(field) || (++place, false)) || ...);
        },
        JsonRecord<Record>::fields);
    return place;
}

template <class Record>
void requireFields(std::uint64_t seen) {
    std::uint64_t bit = 1;
    std::apply(
        [&](const auto&... field) {
            const auto require = [&]<class Value>(const JsonField<Record, Value>& candidate) {
                if (!isOptional<Value> && !(seen & bit))
                    failField(candidate.key, "is missing");
                bit <<= 1;
            };
            (require(field), ...);
        },
        JsonRecord<Record>::fields);
}

template <class Record>
Record readRecord(simdjson::ondemand::object object) {
    constexpr std::size_t fieldCount = std::tuple_size_v<decltype(JsonRecord<Record>::fields)>;
    static_assert(fieldCount < 64);
    Record record = blankRecord<Record>();
    std::uint64_t seen = 0;
    for (simdjson::ondemand::field field : object) {
        const std::string_view key = field.unescaped_key();
        try {
            const std::size_t place = readField(record, key, field.value());
            if (place == fieldCount)
                skip(field.value());
            seen |= std::uint64_t{1} << place;
        } catch (const simdjson::simdjson_error&) {
            failField(key, "has a value that is not valid");
        }
    }
    requireFields<Record>(seen);
    return record;
}

template <class Record>
void writeRecord(JsonWriter& writer, const Record& record);

template <class T>
void writeValue(JsonWriter& writer, const T& value, const JsonRange& range) {
    if constexpr (std::is_same_v<T, std::string>) {
        writer.text(value);
    } else if constexpr (std::is_same_v<T, bool>) {
        writer.boolean(value);
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
        writer.integer(value);
    } else if constexpr (std::is_same_v<T, double>) {
        writer.number(checkedNumber(value, range));
    } else if constexpr (std::is_same_v<T, Date>) {
        writer.number(checkedNumber(value.secondsSinceReference, dateRange));
    } else if constexpr (std::is_same_v<T, Uuid>) {
        writer.text(value.text());
    } else if constexpr (std::is_enum_v<T>) {
        writer.text(JsonNames<T>::names[static_cast<std::size_t>(value)]);
    } else if constexpr (isVector<T>) {
        writer.beginArray();
        for (const auto& element : value) {
            writer.element();
            writeValue(writer, element, range);
        }
        writer.endArray();
    } else if constexpr (isMap<T>) {
        writer.beginObject();
        for (const auto& [key, mapped] : value) {
            writer.key(key);
            writeValue(writer, mapped, range);
        }
        writer.endObject();
    } else {
        writeRecord(writer, value);
    }
}

template <class Record>
constexpr bool hasSortedKeys() {
    return std::apply(
        [](const auto&... field) {
            std::string_view last;
            return ((std::exchange(last, field.key) < field.key) && ...);
        },
        JsonRecord<Record>::fields);
}

template <class Record>
void writeRecord(JsonWriter& writer, const Record& record) {
    static_assert(hasSortedKeys<Record>());
    writer.beginObject();
    const auto writeField = [&]<class Value>(const JsonField<Record, Value>& field) {
        const Value& value = record.*field.member;
        if constexpr (isOptional<Value>) {
            if (!value)
                return;
            writer.key(field.key);
            writeValue(writer, *value, field.range);
        } else {
            writer.key(field.key);
            writeValue(writer, value, field.range);
        }
    };
    std::apply([&](const auto&... field) { (writeField(field), ...); }, JsonRecord<Record>::fields);
    writer.endObject();
}

} // namespace json

/// Reads documents one after another and keeps its buffers between them. One thread at a time.
class JsonParser {
public:
    /// The record that is the whole document. Throws JsonFailure.
    template <class Record>
    Record decode(std::string_view document) {
        return decode(document, [](simdjson::ondemand::object object) { return json::readRecord<Record>(object); });
    }

private:
    template <class Read>
    auto decode(std::string_view text, Read read) {
        if (text.size() > JsonLimits::maximumBytes)
            throw JsonFailure("it is too large");
        // Zeros behind the end keep a document that is cut off from borrowing brackets of an earlier one.
        m_buffer.assign(text).append(simdjson::SIMDJSON_PADDING, '\0');
        try {
            simdjson::ondemand::document document = m_parser.iterate(m_buffer.data(), text.size(), m_buffer.size());
            auto record = read(document.get_object());
            if (document.current_location().error() != simdjson::OUT_OF_BOUNDS)
                throw JsonFailure("something follows its end");
            return record;
        } catch (const simdjson::simdjson_error& error) {
            throw JsonFailure(error.what());
        }
    }

    simdjson::ondemand::parser m_parser;
    std::string m_buffer;
};

/// The record as a document. Throws JsonFailure for a number that decoding would refuse.
template <class Record>
std::string encodeJson(const Record& record) {
    JsonWriter writer;
    json::writeRecord(writer, record);
    return std::move(writer).take();
}

} // namespace varnet
