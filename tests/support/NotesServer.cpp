#include "tests/support/NotesServer.h"

#include <QJsonDocument>

#include <iterator>

namespace varnet::test {

NotesServer::NotesServer() {
    std::ofstream(keyFile()) << "sesame-17\n";
    std::ofstream(m_folder / "log").flush();
    behave(R"({"mode": "recipe"})");
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral("/usr/bin/python3"),
                    {QStringLiteral(VARNET_SOURCE_DIR "/tests/support/notes_server.py"), QStringLiteral("0"),
                     QString::fromStdString(m_folder.path().string())});
    while (!m_process.canReadLine())
        if (!m_process.waitForReadyRead(10'000))
            throw std::runtime_error("the notes server did not start");
    m_port = m_process.readLine().trimmed().split(' ').last();
}

NotesServer::~NotesServer() {
    m_process.kill();
    m_process.waitForFinished();
}

QUrl NotesServer::url(const QString& start) const {
    return QUrl(start + QLatin1Char(':') + QString::fromLatin1(m_port));
}

void NotesServer::behave(const std::string& json) {
    std::ofstream(m_folder / "behaviour") << json;
}

std::vector<QJsonObject> NotesServer::requests() const {
    std::vector<QJsonObject> found;
    std::ifstream file(m_folder / "requests");
    for (std::string line; std::getline(file, line);)
        found.push_back(QJsonDocument::fromJson(QByteArray::fromStdString(line)).object());
    return found;
}

std::string NotesServer::log() const {
    std::ifstream file(m_folder / "log");
    return {std::istreambuf_iterator(file), {}};
}

std::vector<double> NotesServer::timings() const {
    std::ifstream file(m_folder / "timings");
    return {std::istream_iterator<double>(file), {}};
}

} // namespace varnet::test
