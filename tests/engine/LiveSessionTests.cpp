#include "tests/engine/EngineClient.h"

#include <QJsonArray>

#include <gtest/gtest.h>

TEST(LiveSession, SendsPartialsThenTheUtteranceThenTheAcknowledgement) {
    LiveClient client(sharedEngine());
    client.hold(spoken("We will talk about the money next week. The train was late again."));
    EXPECT_EQ(client.waitFor("input_audio_buffer.committed"), client.messages.size() - 1);
    const auto partial = client.waitFor("transcription.delta");
    const auto completed = client.waitFor("transcription.completed");
    ASSERT_TRUE(partial && completed);
    EXPECT_LT(*partial, *completed);
    EXPECT_FALSE(client.messages[*partial]["transcript"].toString().isEmpty());
    const QJsonObject utterance = client.messages[*completed];
    EXPECT_EQ(utterance.value("transcript").toString().toStdString(),
              "we will talk about the money next week the train was late again");
    double position = 0;
    for (const QJsonValue word : utterance.value("words").toArray()) {
        EXPECT_GE(word["start"].toDouble(), position);
        EXPECT_GT(word["end"].toDouble(), word["start"].toDouble());
        EXPECT_EQ(word["speaker"].toInt(-1), 0);
        position = word["end"].toDouble();
    }
    EXPECT_GT(position, 2.0);
    EXPECT_LT(position, utterance.value("audio_processed").toDouble());
}

TEST(LiveSession, TimesGoOnThroughSilenceAndEveryPauseEndsAnUtterance) {
    LiveClient client(sharedEngine());
    const QByteArray sentence = spoken("Good morning.");
    client.hold(sentence + QByteArray(3 * 32000, 0) + sentence);
    const QJsonArray words = client.words();
    ASSERT_EQ(words.size(), 4);
    EXPECT_EQ(words[2]["word"], "good");
    const double distance = static_cast<double>(sentence.size()) / 32000 + 3;
    EXPECT_NEAR(words[2]["start"].toDouble() - words[0]["start"].toDouble(), distance, 0.05);
    EXPECT_EQ(words[2]["speaker"].toInt(-1), words[0]["speaker"].toInt(-2));
}

TEST(LiveSession, BadInputIsAnsweredByAnErrorAndTheEnd) {
    const struct {
        bool updated;
        QString text;
        qsizetype audio;
        QString message;
    } cases[] = {
        {true, "", 5119, "The audio block ends within a sample."},
        {true, "", 1048578, "The audio block is too long."},
        {false, "", 5120, "Audio came before \"session.update\"."},
        {true, "{\"type\":", 0, "The message is not a JSON object."},
        {true, QString(70000, 'x'), 0, "The message is too long."},
        {false, R"({"type":"session.update","session":{"endpointing_ms":1e9}})", 0,
         "The session's \"endpointing_ms\" must be from 200 to 5000."},
    };
    for (const auto& [updated, text, audio, message] : cases) {
        LiveClient client(sharedEngine());
        if (updated)
            client.handshake();
        audio ? client.sendBlock(QByteArray(audio, 1)) : client.sendText(text);
        EXPECT_TRUE(client.waitForClose()) << message.toStdString();
        EXPECT_EQ(client.messages.back()["error"].toObject()["message"].toString(), message);
    }
    LiveClient client(sharedEngine());
    client.handshake();
    client.sendBlock(QByteArray(8 * 1024 * 1024, 1));
    EXPECT_TRUE(client.waitForClose()) << "a message beyond all bounds";
    EXPECT_EQ(sharedEngine().health(), 200);
}
