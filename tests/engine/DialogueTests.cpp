#include "tests/engine/EngineClient.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

constexpr char tools[] = VARNET_SOURCE_DIR "/tests/support/dialogue/";

struct Dialogue {
    explicit Dialogue(const QString& name) {
        EXPECT_EQ(QProcess::execute(QString(tools) + "make_dialogue.py", {"--name", name, "--out", folder.path()}), 0);
        audio = pcmOf(folder.filePath("mixed.wav"));
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
