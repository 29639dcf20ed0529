#include "Varnet/platform/FileBody.h"

#include "MeetingCore/base/Failures.h"

#include <algorithm>
#include <cerrno>

namespace varnet {

FileBody::FileBody(QByteArray before, std::filesystem::path file, QByteArray after)
    : m_before(std::move(before)), m_file(std::in_place, std::move(file)), m_after(std::move(after)) {
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

FileBody::FileBody(QByteArray text) : m_before(std::move(text)) {
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 FileBody::size() const {
    return m_before.size() + fileSize() + m_after.size();
}

qint64 FileBody::readData(char* bytes, qint64 count) {
    const auto copy = [&](const QByteArray& text, qint64 from) {
        const qint64 taken = std::min(count, text.size() - from);
        std::copy_n(text.constData() + from, taken, bytes);
        return taken;
    };
    if (m_failure)
        return -1;
    if (pos() < m_before.size())
        return copy(m_before, pos());
    const qint64 place = pos() - m_before.size();
    if (place >= fileSize())
        return copy(m_after, place - fileSize());
    const auto wanted = static_cast<std::size_t>(std::min(count, fileSize() - place));
    try {
        const std::span target(reinterpret_cast<std::byte*>(bytes), wanted);
        if (m_file->read(target, static_cast<std::uint64_t>(place)) == wanted)
            return static_cast<qint64>(wanted);
        throw FileFailure::reading(m_file->path(), ENODATA);
    } catch (const FileFailure&) {
        m_failure = std::current_exception();
        return -1;
    }
}

} // namespace varnet
