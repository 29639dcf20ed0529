#include "tests/engine/EngineClient.h"

#include <QJsonArray>
#include <QtEndian>

#include <gtest/gtest.h>

TEST(LiveSession, SendsPartialsThenTheUtteranceThenTheAcknowledgement) {
    LiveClient client(sharedEngine());
    client.hold(spoken("We will talk about the money next week. The train was late again."));
    EXPECT_EQ(client.waitFor("input_audio_buffer.committed"), client.messages.size() - 1);
    const auto partial = client.waitFor("transcription.delta");
    const auto completed = client.waitFor("transcription.completed");
    ASSERT_TRUE(partial && completed);
    EXPECT_LT(*partial, *completed);
    EXPECT_FALSE(client.messages[*partial].json.value("transcript").toString().isEmpty());
    const QJsonObject utterance = client.messages[*completed].json;
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
    ASSERT_EQ(client.text(), "good morning good morning");
    const double distance = static_cast<double>(sentence.size()) / 32000 + 3;
    EXPECT_NEAR(words[2]["start"].toDouble() - words[0]["start"].toDouble(), distance, 0.05);
    EXPECT_EQ(words[2]["speaker"].toInt(-1), words[0]["speaker"].toInt(-2));
}

TEST(LiveSession, KnowsNothingOfTheSessionsBefore) {
    EngineProcess own;
    const QByteArray sentence = spoken("We will talk about the money next week.");
    const auto words = [&own](const QByteArray& audio) {
        LiveClient client(own);
        client.hold(audio);
        return client.words();
    };
    const QJsonArray first = words(sentence);
    QByteArray quiet = spoken("The train was late again, and nobody was there. I have never seen such a movie.", "awb");
    for (qsizetype i = 0; i < quiet.size(); i += 2)
        qToLittleEndian<qint16>(static_cast<qint16>(qFromLittleEndian<qint16>(quiet.constData() + i) / 50),
                                quiet.data() + i);
    words(quiet);
    EXPECT_EQ(words(sentence), first);
    EXPECT_EQ(first.size(), 8);
}

TEST(LiveSession, CommitsWithoutSpeechAreAcknowledgedAlone) {
    LiveClient client(sharedEngine());
    client.hold(QByteArray(2 * 32000, 0));
    client.commit();
    EXPECT_TRUE(await([&] { return client.messages.size() == 4; }));
    EXPECT_EQ(client.messages.back().type(), "input_audio_buffer.committed");
}

TEST(LiveSession, TwoAtOnceHearTheirOwnAudioOnly) {
    LiveClient first(sharedEngine()), second(sharedEngine());
    first.handshake();
    second.handshake();
    first.sendAudio(spoken("The train was late again."));
    second.sendAudio(spoken("We need a new kitchen.", "rms"));
    first.commit();
    second.commit();
    ASSERT_TRUE(first.waitFor("input_audio_buffer.committed"));
    ASSERT_TRUE(second.waitFor("input_audio_buffer.committed"));
    EXPECT_EQ(first.text(), "the train was late again");
    EXPECT_EQ(second.text(), "we need a new kitchen");
}

TEST(LiveSession, BadInputIsAnsweredByAnErrorAndTheEnd) {
    struct Case {
        const char* name;
        bool updated;
        std::function<void(LiveClient&)> send;
        QString message;
    };
    const auto text = [](const QString& message) {
        return [message](LiveClient& client) { client.sendText(message); };
    };
    const auto audio = [](qsizetype bytes) {
        return [bytes](LiveClient& client) { client.sendBlock(QByteArray(bytes, 1)); };
    };
    const Case cases[] = {
        {"odd bytes", true, audio(5119), "The audio block ends within a sample."},
        {"a block over 1 MiB", true, audio(1048578), "The audio block is too long."},
        {"early audio", false, audio(5120), "Audio came before \"session.update\"."},
        {"no JSON", true, text("{\"type\":"), "The message is not a JSON object."},
        {"a text over 64 KiB", true, text(QString(70000, 'x')), "The message is too long."},
        {"other rate", false, text("{\"type\":\"session.update\",\"session\":{\"sample_rate\":48000}}"),
         "Only a sample rate of 16000 is supported."},
        {"endless pause", false, text("{\"type\":\"session.update\",\"session\":{\"endpointing_ms\":1e9}}"),
         "The session's \"endpointing_ms\" must be from 200 to 5000."},
    };
    for (const Case& entry : cases) {
        SCOPED_TRACE(entry.name);
        LiveClient client(sharedEngine());
        if (entry.updated)
            client.handshake();
        entry.send(client);
        EXPECT_TRUE(client.waitForClose());
        EXPECT_EQ(client.messages.back().type(), "error");
        EXPECT_EQ(client.messages.back().json.value("error")["message"].toString(), entry.message);
    }
    LiveClient client(sharedEngine());
    client.handshake();
    client.sendBlock(QByteArray(8 * 1024 * 1024, 1));
    EXPECT_TRUE(client.waitForClose()) << "a message beyond all bounds";
    EXPECT_EQ(sharedEngine().health(), 200);
}

TEST(LiveSession, TheFifthAtOnceIsRefusedAndFitsInAfterOneHasEnded) {
    std::vector<std::unique_ptr<LiveClient>> running;
    const auto accepted = [&] {
        auto client = std::make_unique<LiveClient>(sharedEngine());
        client->sendText(R"({"type":"session.update","session":{}})");
        await([&] { return client->messages.size() == 2; });
        if (client->messages.back().type() == "error")
            return false;
        running.push_back(std::move(client));
        return true;
    };
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(await(accepted)); // those of the tests before end in a moment
    EXPECT_FALSE(accepted());
    running.pop_back();
    EXPECT_TRUE(await(accepted));
}
