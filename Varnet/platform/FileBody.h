#pragma once

#include "MeetingCore/base/FileReader.h"

#include <QByteArray>
#include <QIODevice>

#include <exception>
#include <filesystem>
#include <optional>

namespace varnet {

/// The body of an upload: a file's bytes between two texts, read from the file as they are sent, or a text alone. Each
/// byte is sent once, and the size is settled when the body is made. Main thread.
class FileBody : public QIODevice {
public:
    /// Throws FileFailure when the file cannot be opened or is no regular file.
    FileBody(QByteArray before, std::filesystem::path file, QByteArray after);
    explicit FileBody(QByteArray text);

    /// Why reading ended early, also when the file became shorter; null until then.
    const std::exception_ptr& failure() const { return m_failure; }

    bool isSequential() const override { return false; }
    qint64 size() const override;
    /// Only to where it stands: nothing is sent twice.
    bool seek(qint64 position) override { return position == pos(); }

protected:
    qint64 readData(char* bytes, qint64 count) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    qint64 fileSize() const { return m_file ? static_cast<qint64>(m_file->size()) : 0; }

    QByteArray m_before;
    std::optional<FileReader> m_file;
    QByteArray m_after;
    std::exception_ptr m_failure;
};

} // namespace varnet
