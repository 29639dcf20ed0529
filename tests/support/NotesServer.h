#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QUrl>

#include <string>
#include <vector>

namespace varnet::test {

/// The strict model server of notes_server.py as a child process on a free port, with a key of its own.
class NotesServer {
public:
    NotesServer();
    ~NotesServer();

    /// Its address, with another scheme or host if it is to be one that does not fit.
    QUrl url(const QString& start = QStringLiteral("http://127.0.0.1")) const;
    std::filesystem::path keyFile() const { return m_folder / "key"; }

    /// From the next request on. The text is the behaviour file's.
    void behave(const std::string& json);

    /// What has come so far.
    std::vector<QJsonObject> requests() const;
    /// What was wrong with it; empty as long as nothing was.
    std::string log() const;
    /// The seconds that it took itself for each answer.
    std::vector<double> timings() const;

private:
    TemporaryFolder m_folder;
    QProcess m_process;
    QByteArray m_port;
};

} // namespace varnet::test
