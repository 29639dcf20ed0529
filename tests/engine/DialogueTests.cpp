#include "tests/engine/EngineClient.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(Dialogue, OfThreeVoicesIsUnderstoodLiveAndFromAFile) {
    const QString tools = VARNET_SOURCE_DIR "/tests/support/dialogue/";
    const QTemporaryDir folder;
    ASSERT_EQ(QProcess::execute(tools + "make_dialogue.py", {"--name", "slt-rms-awb", "--out", folder.path()}), 0);
    const QByteArray audio = pcmOf(folder.filePath("mixed.wav"));
    EngineProcess engine;
    LiveClient live(engine);
    live.hold(audio);
    QByteArray file = exchange(engine.port(), transcriptionRequest(wavOf(audio))).body;
    file = file.mid(file.indexOf('{')).chopped(file.size() - file.lastIndexOf('}') - 1); // in one of its chunks
    for (const QJsonArray& words : {live.words(), QJsonDocument::fromJson(file)["words"].toArray()}) {
        QFile transcript(folder.filePath("words.json"));
        ASSERT_TRUE(transcript.open(QFile::WriteOnly));
        transcript.write(QJsonDocument(QJsonObject{{"words", words}}).toJson());
        transcript.close();
        // The table of the scores goes to the test's output.
        EXPECT_EQ(QProcess::execute(tools + "score.py", {"--max-wer", "15", "--min-speaker-accuracy", "85",
                                                         folder.filePath("reference.json"), transcript.fileName()}),
                  0);
    }
}
