#pragma once

#include "MeetingCore/base/Failures.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace varnet {

/// Data that is not the JSON of the record it should be, or a record that cannot stand in JSON. `detail` goes into the
/// sentence: "The data is not valid: “status” is missing."
class JsonFailure : public Failure {
public:
    explicit JsonFailure(std::string_view detail);
};

/// Bounds on what is read. Beyond them a document is refused, so that a hostile one costs no more than its size.
namespace JsonLimits {
inline constexpr std::size_t maximumBytes = std::size_t{64} << 20;
inline constexpr std::size_t maximumElements = 1'000'000; ///< of one array or map
inline constexpr int maximumDepth = 64;                   ///< of values under keys that nobody knows
} // namespace JsonLimits

/// How a document is laid out: with two blanks of indentation, `"key": value`, empty containers on one line and a line
/// feed at the end, or without any white space.
enum class JsonLayout { pretty, compact };

/// Writes one document. Text is written as valid UTF-8 with bad bytes replaced by U+FFFD. The caller keeps the order of
/// keys and puts a key() before every member of an object and an element() before every member of an array.
class JsonWriter {
public:
    /// `expectedBytes` is how long the document may become; it grows beyond.
    explicit JsonWriter(JsonLayout layout = JsonLayout::pretty, std::size_t expectedBytes = 0)
        : m_buffer(expectedBytes, '\0'), m_pretty(layout == JsonLayout::pretty) {}

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }
    void key(std::string_view name);
    void element();

    void text(std::string_view value);
    /// The same for names and values known to be ASCII without quotation marks, backslashes and control characters.
    void plainKey(std::string_view name);
    void plainText(std::string_view value);
    /// The shortest text that reads back as the same bits. `value` must be finite.
    void number(double value);
    void integer(std::int64_t value);
    void boolean(bool value);

    /// What was written since the last call; the writer goes on behind it.
    std::string takePart();
    /// Goes on as if elements stood in the open array already.
    void passElements() { m_empty = false; }

    /// The rest of the document, once everything is closed.
    std::string finish();

private:
    void open(char bracket);
    void close(char bracket);
    char* writeNewLine(char* out) const;
    char* writeNextElement(char* out);
    /// Where at least so many bytes can be written; wrote() tells where they end.
    char* room(std::size_t bytes);
    void wrote(const char* end) { m_size = static_cast<std::size_t>(end - m_buffer.data()); }

    std::string m_buffer; ///< as long as room was made
    std::size_t m_size = 0;
    std::size_t m_depth = 0;
    bool m_pretty;
    bool m_empty = true; ///< nothing stands in the open container yet
};

} // namespace varnet
