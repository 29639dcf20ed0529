#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/base/JsonFields.h"
#include "MeetingCore/base/Uuid.h"

#include <simdjson.h>

#include <array>
#include <cstdint>
#include <span>
#include <type_traits>
#include <utility>

/// Documents into records. It brings the whole of simdjson, so only sources include it.
namespace varnet {

namespace json {

/// Looks at every part of a value that nobody wants.
void skip(simdjson::ondemand::value& value, int depthLeft = JsonLimits::maximumDepth);

double readNumber(simdjson::ondemand::value& value, const JsonRange& range);

Uuid readUuid(simdjson::ondemand::value& value);

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

template <class T>
T blank() {
    if constexpr (requires { JsonRecord<T>::blank(); })
        return JsonRecord<T>::blank();
    else
        return T{};
}

/// Into a blank record.
template <class Record>
void readRecord(simdjson::ondemand::object object, Record& record);

/// Whatever `target` held is gone.
template <class T>
void readValue(simdjson::ondemand::value& value, const JsonRange& range, T& target) {
    if constexpr (std::is_same_v<T, std::string>) {
        target.assign(value.get_string().value());
    } else if constexpr (std::is_same_v<T, bool>) {
        target = value.get_bool();
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
        target = value.get_int64();
    } else if constexpr (std::is_same_v<T, double>) {
        target = readNumber(value, range);
    } else if constexpr (std::is_same_v<T, Date>) {
        target.secondsSinceReference = readNumber(value, dateRange);
    } else if constexpr (std::is_same_v<T, Uuid>) {
        target = readUuid(value);
    } else if constexpr (std::is_enum_v<T>) {
        target = readName<T>(value.get_string());
    } else if constexpr (isOptional<T>) {
        target.reset();
        if (!value.is_null())
            readValue(value, range, target.emplace(blank<typename T::value_type>()));
    } else if constexpr (isVector<T>) {
        target.clear();
        simdjson::ondemand::array array = value.get_array();
        for (auto element : array) {
            checkElementCount(target.size());
            readValue(element.value(), range, target.emplace_back(blank<typename T::value_type>()));
        }
    } else if constexpr (isMap<T>) {
        target.clear();
        simdjson::ondemand::object object = value.get_object();
        for (simdjson::ondemand::field field : object) {
            checkElementCount(target.size());
            std::string key(field.unescaped_key().value());
            readValue(field.value(), range, target[std::move(key)]);
        }
    } else {
        readRecord(value.get_object(), target);
    }
}

template <class Record>
inline constexpr std::size_t fieldCount = std::tuple_size_v<std::remove_cvref_t<decltype(JsonRecord<Record>::fields)>>;

struct FieldName {
    std::string_view key;
    bool required;
};

template <class Record>
constexpr auto fieldNames = std::apply(
    []<class... Value>(const JsonField<Record, Value>&... field) {
        return std::array{FieldName{field.key, !isOptional<Value>}...};
    },
    JsonRecord<Record>::fields);

/// The place of the field with this key, their number if there is none.
std::size_t placeOf(simdjson::ondemand::field& field, std::span<const FieldName> names);

/// The same, by comparing the key as it stands in the document with fields from `expected` on, where it is found in
/// documents whose keys are in order.
template <class Record, std::size_t... places>
std::size_t placeOf(simdjson::ondemand::field& field, std::size_t expected, std::index_sequence<places...>) {
    const simdjson::ondemand::raw_json_string raw = field.key();
    std::size_t found = 0;
    const bool inOrder =
        ((places >= expected && raw.unsafe_is_equal(fieldNames<Record>[places].key) && (found = places, true)) || ...);
    return inOrder ? found : placeOf(field, fieldNames<Record>);
}

void requireFields(std::span<const FieldName> names, std::uint64_t seen);

template <class Record, std::size_t... places>
void readField(Record& record, std::size_t place, simdjson::ondemand::value& value, std::index_sequence<places...>) {
    const auto readInto = [&](const auto& field) { readValue(value, field.range, record.*field.member); };
    (void)((place == places && (readInto(std::get<places>(JsonRecord<Record>::fields)), true)) || ...);
}

template <class Record>
void readRecord(simdjson::ondemand::object object, Record& record) {
    constexpr std::size_t count = fieldCount<Record>;
    static_assert(count < 64);
    constexpr auto places = std::make_index_sequence<count>();
    constexpr std::span<const FieldName> names = fieldNames<Record>;
    std::uint64_t seen = 0;
    std::size_t expected = 0;
    for (simdjson::ondemand::field field : object) {
        const std::size_t place = placeOf<Record>(field, expected, places);
        if (place == count) {
            skip(field.value());
            continue;
        }
        try {
            readField(record, place, field.value(), places);
        } catch (const simdjson::simdjson_error&) {
            failField(names[place].key, "has a value that is not valid");
        }
        seen |= std::uint64_t{1} << place;
        expected = place + 1;
    }
    requireFields(names, seen);
}

} // namespace json

/// Reads documents one after another and keeps its buffers between them. One thread at a time.
class JsonParser {
public:
    /// The record that is the whole document. Throws JsonFailure.
    template <class Record>
    Record decode(std::string_view document) {
        m_buffer.assign(document);
        return decodeBuffer<Record>();
    }

    /// Where to put the next document for decodeBuffer. It keeps its memory.
    std::string& buffer() { return m_buffer; }

    template <class Record>
    Record decodeBuffer() {
        const std::size_t size = m_buffer.size();
        if (size > JsonLimits::maximumBytes)
            throw JsonFailure("it is too large");
        // Zeros behind the end keep a document that is cut off from borrowing brackets of an earlier one.
        m_buffer.append(simdjson::SIMDJSON_PADDING, '\0');
        try {
            simdjson::ondemand::document document = m_parser.iterate(m_buffer.data(), size, m_buffer.size());
            Record record = json::blank<Record>();
            json::readRecord(document.get_object(), record);
            if (document.current_location().error() != simdjson::OUT_OF_BOUNDS)
                throw JsonFailure("something follows its end");
            return record;
        } catch (const simdjson::simdjson_error& error) {
            throw JsonFailure(error.what());
        }
    }

private:
    simdjson::ondemand::parser m_parser;
    std::string m_buffer;
};

} // namespace varnet
