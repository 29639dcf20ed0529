#include "MeetingCore/base/JsonDecoding.h"

#include <algorithm>

namespace varnet::json {

using simdjson::ondemand::json_type;

void skip(simdjson::ondemand::value& value, int depthLeft) {
    if (depthLeft == 0)
        throw JsonFailure("it is nested too deeply");
    switch (value.type()) {
    case json_type::object: {
        simdjson::ondemand::object object = value.get_object();
        for (simdjson::ondemand::field field : object) {
            (void)field.unescaped_key().value();
            skip(field.value(), depthLeft - 1);
        }
        break;
    }
    case json_type::array: {
        simdjson::ondemand::array array = value.get_array();
        for (simdjson::ondemand::value element : array)
            skip(element, depthLeft - 1);
        break;
    }
    case json_type::string:
        (void)value.get_string().value();
        break;
    case json_type::number:
        (void)value.get_double().value();
        break;
    case json_type::boolean:
        (void)value.get_bool().value();
        break;
    case json_type::null:
        (void)value.is_null().value();
        break;
    }
}

double readNumber(simdjson::ondemand::value& value, const JsonRange& range) {
    return checkedNumber(value.get_double(), range);
}

Uuid readUuid(simdjson::ondemand::value& value) {
    const auto id = Uuid::parse(value.get_string());
    if (!id)
        throw simdjson::simdjson_error(simdjson::INCORRECT_TYPE);
    return *id;
}

std::size_t placeOf(simdjson::ondemand::field& field, std::span<const FieldName> names) {
    const std::string_view key = field.unescaped_key();
    return static_cast<std::size_t>(std::ranges::find(names, key, &FieldName::key) - names.begin());
}

void requireFields(std::span<const FieldName> names, std::uint64_t seen) {
    for (std::size_t place = 0; place < names.size(); ++place)
        if (names[place].required && !(seen >> place & 1))
            failField(names[place].key, "is missing");
}

void checkElementCount(std::size_t count) {
    if (count == JsonLimits::maximumElements)
        throw JsonFailure("a list is too long");
}

void failField(std::string_view key, std::string_view complaint) {
    throw JsonFailure("“" + std::string(key) + "” " + std::string(complaint));
}

} // namespace varnet::json
