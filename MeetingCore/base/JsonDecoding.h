#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/base/JsonFields.h"
#include "MeetingCore/base/Uuid.h"

#include <simdjson.h>

#include <cstdint>
#include <type_traits>
#include <utility>

/// Documents into records. It brings the whole of simdjson, so only sources include it.
namespace varnet {

namespace json {

/// Looks at every part of a value that nobody wants.
void skip(simdjson::ondemand::value value, int depthLeft = JsonLimits::maximumDepth);

double readNumber(simdjson::ondemand::value value, const JsonRange& range);

Uuid readUuid(simdjson::ondemand::value value);

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

} // namespace varnet
