#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/base/JsonFields.h"
#include "MeetingCore/base/Uuid.h"

#include <cstdint>
#include <span>
#include <type_traits>
#include <utility>

/// Records into documents.
namespace varnet {

namespace json {

template <class Record>
void writeRecord(JsonWriter& writer, const Record& record);

template <class Element>
void writeList(JsonWriter& writer, std::span<const Element> elements, const JsonRange& range);

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
        writer.plainText(value.text());
    } else if constexpr (std::is_enum_v<T>) {
        writer.plainText(JsonNames<T>::names[static_cast<std::size_t>(value)]);
    } else if constexpr (isVector<T>) {
        writeList(writer, std::span<const typename T::value_type>(value), range);
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

template <class Element>
void writeList(JsonWriter& writer, std::span<const Element> elements, const JsonRange& range) {
    writer.beginArray();
    for (const Element& element : elements) {
        writer.element();
        writeValue(writer, element, range);
    }
    writer.endArray();
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

template <class Record, class Value>
void writeMember(JsonWriter& writer, const Record& record, const JsonField<Record, Value>& field) {
    const Value& value = record.*field.member;
    if constexpr (isOptional<Value>) {
        if (!value)
            return;
        writer.plainKey(field.key);
        writeValue(writer, *value, field.range);
    } else {
        writer.plainKey(field.key);
        writeValue(writer, value, field.range);
    }
}

template <class Record, class Fields>
void writeMembers(JsonWriter& writer, const Record& record, const Fields& fields) {
    std::apply([&](const auto&... field) { (writeMember(writer, record, field), ...); }, fields);
}

template <class Record>
void writeRecord(JsonWriter& writer, const Record& record) {
    static_assert(hasSortedKeys<Record>());
    writer.beginObject();
    writeMembers(writer, record, JsonRecord<Record>::fields);
    writer.endObject();
}

} // namespace json

/// The record, or a list of records, as a document. Throws JsonFailure for a number that decoding would refuse.
template <class Value>
std::string encodeJson(const Value& value, JsonLayout layout = JsonLayout::pretty) {
    JsonWriter writer(layout);
    json::writeValue(writer, value, anyTime);
    return writer.finish();
}

} // namespace varnet
