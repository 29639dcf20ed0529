#include "tests/engine/EngineClient.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <iostream>
#include <memory>

namespace {

constexpr char tools[] = VARNET_SOURCE_DIR "/tests/support/dialogue/";

struct Dialogue {
    explicit Dialogue(const QString& name) {
        EXPECT_EQ(QProcess::execute(QString(tools) + "make_dialogue.py", {"--name", name, "--out", folder.path()}), 0);
        audio = pcmOf(folder.filePath("mixed.wav"));
        QFile file(folder.filePath("reference.json"));
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        turns = QJsonDocument::fromJson(file.readAll())["turns"].toArray();
    }

    /// The score's exit status; its table goes to the test's output.
    int score(const QJsonArray& words, const char* leastAccuracy) const {
        QFile file(folder.filePath("words.json"));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(QJsonDocument(QJsonObject{{"words", words}}).toJson());
        file.close();
        return QProcess::execute(QString(tools) + "score.py",
                                 {"--max-wer", "15", "--min-speaker-accuracy", leastAccuracy,
                                  folder.filePath("reference.json"), file.fileName()});
    }

    QTemporaryDir folder;
    QByteArray audio;
    QJsonArray turns;
};

} // namespace

TEST(Dialogue, OfTwoMenAndOfThreeVoicesIsUnderstoodLiveAndFromAFile) {
    EngineProcess engine;
    const std::pair<const char*, const char*> dialogues[] = {{"rms-awb", "90"}, {"slt-rms-awb", "85"}};
    for (const auto& [name, accuracy] : dialogues) {
        SCOPED_TRACE(name);
        const Dialogue dialogue(name);
        LiveClient client(engine);
        client.hold(dialogue.audio);
        EXPECT_EQ(dialogue.score(client.words(), accuracy), 0);
    }
    const std::pair<const char*, const char*> files[] = {{"slt-rms", "90"}, {"slt-rms-awb", "85"}};
    for (const auto& [name, accuracy] : files) {
        SCOPED_TRACE(name);
        const Dialogue dialogue(name);
        const HTTPResult file = exchange(engine.port(), transcriptionRequest(wavOf(dialogue.audio)));
        ASSERT_EQ(file.status, 200);
        EXPECT_EQ(dialogue.score(QJsonDocument::fromJson(file.body)["words"].toArray(), accuracy), 0);
    }
}

TEST(Dialogue, InRealTimeIsUnderstoodSoonWithLittleWork) {
    EngineProcess engine;
    const Dialogue dialogue("slt-rms");
    LiveClient client(engine);
    client.handshake();
    const double cpuBefore = engine.cpuSeconds();
    QElapsedTimer playing;
    playing.start();
    const double begun = static_cast<double>(client.clock.elapsed()) / 1000;
    qsizetype sent = 0;
    ASSERT_TRUE(await(
        [&] {
            for (; sent < dialogue.audio.size() && sent + 5120 <= playing.elapsed() * 32; sent += 5120)
                client.sendBlock(dialogue.audio.mid(sent, 5120));
            return sent >= dialogue.audio.size() - 5120;
        },
        std::chrono::seconds(80)));
    const double cpu = (engine.cpuSeconds() - cpuBefore) / (static_cast<double>(playing.elapsed()) / 1000);
    client.commit();
    ASSERT_TRUE(client.waitFor("input_audio_buffer.committed"));
    EXPECT_EQ(dialogue.score(client.words(), "90"), 0);

    const auto partial = client.waitFor("transcription.delta");
    ASSERT_TRUE(partial);
    const double firstPartial = client.messages[*partial].arrival - begun - dialogue.turns[0]["start"].toDouble();
    double worst = 0;
    int completed = 0;
    for (const LiveClient::Message& message : client.messages)
        if (message.type().endsWith(".completed")) {
            ++completed;
            const double lastWord = message.json["words"].toArray().last()["end"].toDouble();
            worst = std::max(worst, message.arrival - begun - lastWord);
        }
    std::cout << "first partial after " << firstPartial << " s, utterances completed at most " << worst
              << " s after their end, " << 100 * cpu << " % of a core\n";
    EXPECT_GE(completed, 4);
    EXPECT_LT(firstPartial, 1.5);
    EXPECT_LT(worst, 1.5);
    EXPECT_LT(cpu, 0.6);
}
