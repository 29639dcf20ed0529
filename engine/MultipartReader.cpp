#include "engine/MultipartReader.h"

#include "engine/Failure.h"

#include <QRegularExpression>

#include <algorithm>

namespace engine {
namespace {

constexpr qsizetype maximumField = 4 * 1024;
constexpr qsizetype maximumHead = 8 * 1024;
constexpr int maximumFields = 16;

/// The value of name=value or name="value" in a header; empty when it isn't there.
QByteArray parameter(const QByteArray& header, const QString& name) {
    const QRegularExpression pattern("(?:^|;)\\s*" + name + "=(?:\"([^\"]*)\"|([^;\\s]+))",
                                     QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(QString::fromUtf8(header));
    return (match.capturedLength(1) > 0 ? match.captured(1) : match.captured(2)).toUtf8();
}

} // namespace

MultipartReader::MultipartReader(const QByteArray& contentType, TakeFile takeFile)
    : m_takeFile(std::move(takeFile)), m_buffer("\r\n") {
    const QByteArray boundary = parameter(contentType, "boundary");
    if (!contentType.toLower().startsWith("multipart/form-data") || boundary.isEmpty() || boundary.size() > 70)
        throw Failure("The request is not multipart/form-data with a boundary");
    m_delimiter = "\r\n--" + boundary;
}

void MultipartReader::append(QByteArrayView data) {
    if (m_state == State::end)
        return;
    m_buffer.append(data);
    while (step()) {
    }
}

bool MultipartReader::step() {
    switch (m_state) {
    case State::delimiter:
        return readDelimiter();
    case State::head:
        return readHead();
    case State::content:
        return readContent();
    case State::end:
        break;
    }
    return false;
}

bool MultipartReader::readContent() {
    const qsizetype end = m_buffer.indexOf(m_delimiter);
    // The buffer's last bytes may be the beginning of a delimiter.
    const qsizetype sure = end >= 0 ? end : std::max<qsizetype>(0, m_buffer.size() - m_delimiter.size() + 1);
    take(QByteArrayView(m_buffer).first(sure));
    m_buffer.remove(0, end >= 0 ? end + m_delimiter.size() : sure);
    if (end < 0)
        return false;
    m_state = State::delimiter;
    return true;
}

void MultipartReader::take(QByteArrayView content) {
    if (m_beforeFirst || content.isEmpty())
        return;
    if (m_name == "file") {
        m_takeFile(content);
        return;
    }
    QByteArray& value = m_fields[m_name];
    if (value.size() + content.size() > maximumField)
        throw Failure("The field \"" + m_name.toStdString() + "\" is too long");
    value.append(content);
}

bool MultipartReader::readDelimiter() {
    if (m_buffer.size() < 2)
        return false;
    if (m_buffer.startsWith("--")) {
        m_state = State::end;
        m_buffer.clear();
        return false;
    }
    if (!m_buffer.startsWith("\r\n"))
        throw Failure("The request's body is malformed");
    m_state = State::head;
    return true;
}

bool MultipartReader::readHead() {
    const qsizetype end = m_buffer.indexOf("\r\n\r\n");
    if (end > maximumHead || (end < 0 && m_buffer.size() > maximumHead))
        throw Failure("A part of the request has too long a head");
    if (end < 0)
        return false;
    m_name.clear();
    for (const QByteArray& line : m_buffer.left(end).split('\n')) {
        if (line.toLower().startsWith("content-disposition:"))
            m_name = parameter(line.trimmed(), "name");
    }
    if (m_name.isEmpty())
        throw Failure("A part of the request has no name");
    const bool again = m_name == "file" ? m_hasFile : m_fields.contains(m_name);
    if (again || m_fields.size() >= maximumFields)
        throw Failure("The request has too many parts");
    if (m_name == "file")
        m_hasFile = true;
    else
        m_fields.insert(m_name, {});
    m_buffer.remove(0, end + 4);
    m_beforeFirst = false;
    m_state = State::content;
    return true;
}

} // namespace engine
