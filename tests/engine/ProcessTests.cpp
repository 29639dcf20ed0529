#include "tests/engine/EngineClient.h"

#include <QFile>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <csignal>

using namespace std::chrono_literals;

namespace {

/// The program runs; one that has ended and that nobody has waited for has no command line any more.
bool serves(qint64 process) {
    QFile file(QString("/proc/%1/cmdline").arg(process));
    return file.open(QFile::ReadOnly) && file.readAll().contains("config/speech.yaml");
}

} // namespace

TEST(EngineProcess, EndsWithinASecondOfSIGTERMWhileItRecognises) {
    EngineProcess engine;
    const QByteArray speech = spoken("We should look at the new building in the center of the city tomorrow morning.");
    LiveClient client(engine);
    client.handshake();
    QTcpSocket file;
    file.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(engine.port()));
    file.write(transcriptionRequest(wavOf(speech.repeated(20))));
    client.sendAudio(speech.repeated(20));
    ASSERT_TRUE(client.waitFor("transcription.delta"));
    EXPECT_EQ(engine.health(), 200);
    ::kill(static_cast<pid_t>(engine.process().processId()), SIGTERM);
    EXPECT_TRUE(engine.process().waitForFinished(1000));
    EXPECT_EQ(engine.process().exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(engine.process().exitCode(), 0);
}

TEST(EngineProcess, EndsWithTheProgramThatOwnsIt) {
    // The signal itself is one that does nothing: the engine must notice by itself.
    QProcess owner;
    owner.start("sh", {"-c", "setpriv --pdeathsig WINCH \"$0\" serve --config \"$1\" --port 0 & echo $!; exec cat",
                       NEMO_SPEECH, VARNET_SOURCE_DIR "/config/speech.yaml"});
    QByteArray output;
    ASSERT_TRUE(await([&] { return (output += owner.readAll()).contains("Listening"); }));
    const qint64 engine = output.split('\n').first().toLongLong();
    ASSERT_TRUE(serves(engine));
    owner.kill();
    owner.waitForFinished();
    EXPECT_TRUE(await([&] { return !serves(engine); }, 2s));
}
