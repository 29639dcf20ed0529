#pragma once

#include <QByteArray>
#include <QHash>

#include <functional>

namespace engine {

/// Takes a multipart/form-data body apart as it comes in. The part "file" goes on to `takeFile` in portions and is
/// never held as a whole; the other fields are kept, at most 16 of at most 4 KiB.
class MultipartReader {
public:
    using TakeFile = std::function<void(QByteArrayView)>;

    /// `contentType` is the request's header. Throws Failure when it isn't multipart/form-data with a boundary.
    MultipartReader(const QByteArray& contentType, TakeFile takeFile);

    /// The next bytes of the body. Throws Failure when they don't follow the format or a bound.
    void append(QByteArrayView data);

    /// The closing delimiter has been read.
    bool complete() const { return m_state == State::end; }
    bool hasFile() const { return m_hasFile; }
    const QHash<QByteArray, QByteArray>& fields() const { return m_fields; }

private:
    enum class State { delimiter, head, content, end };

    bool step();
    bool readDelimiter();
    bool readHead();
    bool readContent();
    void take(QByteArrayView content);

    QByteArray m_delimiter;
    TakeFile m_takeFile;
    QByteArray m_buffer;
    State m_state = State::content; // of the text before the first part, which is dropped
    bool m_beforeFirst = true;
    QByteArray m_name;
    bool m_hasFile = false;
    QHash<QByteArray, QByteArray> m_fields;
};

} // namespace engine
