#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/base/AtomicFile.h"
#include "tests/support/Await.h"
#include "tests/support/StoreFixture.h"

namespace varnet::test {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

constexpr auto transcriptions = "/v1/audio/transcriptions";
/// "Speaker 0" speaks in seconds 0, 2 and 4, "Speaker 1" in the others.
constexpr auto sixTurns =
    R"({"text":"a b c d e f","words":[{"word":"a","start":0,"end":1,"speaker":0},{"word":"b","start":1,"end":2,"speaker":1},)"
    R"({"word":"c","start":2,"end":3,"speaker":0},{"word":"d","start":3,"end":4,"speaker":1},)"
    R"({"word":"e","start":4,"end":5,"speaker":0},{"word":"f","start":5,"end":6,"speaker":1}]})";

class Transcription : public StoreFixture {
protected:
    Transcription() {
        engineAnswers(200, sixTurns);
        openStore();
    }

    void engineAnswers(int status, const QByteArray& body) { health.answer(TestServer::response(status, body)); }
    void engineIsSilent() {
        health.setScript([](const TestServer::Request&, QTcpSocket&) {});
    }
    bool engineWasAsked() {
        return eventually([&] { return !health.requests().empty(); });
    }

    /// A track of six seconds that sounds where its seconds say so.
    static void writeTrack(const fs::path& path, const std::vector<int>& seconds) {
        std::vector<float> samples(6UL * 16000);
        for (const int second : seconds)
            for (int i = 0; i < 16000; ++i)
                samples[static_cast<std::size_t>(second * 16000 + i)] = i % 40 < 20 ? 0.25F : -0.25F;
        DurableWAV wav(path);
        wav.append(DurableWAV::pcm(samples));
    }
    fs::path audioFile(const char* name) {
        writeTrack(folder / name, {0, 1});
        return folder / name;
    }
    /// Hours of silence that take no room on the disk.
    fs::path longFile() {
        fs::path path = audioFile("long.wav");
        fs::resize_file(path, 2'000'000'044);
        DurableWAV::repair(path);
        return path;
    }

    /// A recording of both tracks whose transcript has a turn, a name, and one other attendee.
    Uuid recorded() {
        Meeting meeting = Meeting::make("Recorded");
        meeting.audioFilename = "meeting.wav";
        meeting.turns.emplace_back();
        meeting.turns[0].originalText = "old";
        meeting.speakerNames.emplace()["Speaker 5"] = "Chair";
        meeting.attendees = Strings{"Guest"};
        repository.save(meeting);
        writeTrack(repository.directory(meeting.id) / "meeting.wav", {0, 1, 2, 3, 4, 5});
        writeTrack(repository.directory(meeting.id) / "microphone.wav", {0, 2, 4});
        writeTrack(repository.directory(meeting.id) / "system.wav", {1, 3, 5});
        openStore();
        return meeting.id;
    }
};

TEST_F(Transcription, AnImportedFileBecomesATranscribedMeeting) {
    const fs::path file = audioFile("Q3 review.final.m4a");
    const Task<> importing = store().importAudio(file);
    ASSERT_TRUE(store().audioWork());
    const Uuid id = store().audioWork()->meetingID;
    EXPECT_EQ(store().selectedID(), id);
    EXPECT_EQ(onDisk(id).title, "Q3 review.final");
    ASSERT_TRUE(eventually([&] { return !store().busy(); }));

    EXPECT_EQ(statusesOnDisk, (Strings{"Preparing audio", "Transcribing and assigning speakers", "Transcribed"}));
    EXPECT_EQ(onDisk(id).turns.size(), 6U);
    EXPECT_EQ(store().error(), std::nullopt);
    const std::string converted = readFile(repository.directory(id) / "imported.wav");
    ASSERT_EQ(health.requests().size(), 1U);
    EXPECT_EQ(health.requests()[0].target, transcriptions);
    EXPECT_TRUE(health.requests()[0].body.contains(QByteArray::fromStdString(converted)));
}

TEST_F(Transcription, TextWithoutTimesIsNotLost) {
    for (const auto* answer : {R"({"text":"hello"})", R"({"text":"hello","words":[]})"}) {
        engineAnswers(200, answer);
        await(store().importAudio(audioFile("a.wav")));
        const Meeting& meeting = *store().selected();
        EXPECT_EQ(meeting.status, "Transcribed") << answer;
        ASSERT_EQ(meeting.turns.size(), 1U) << answer;
        EXPECT_EQ(meeting.turns[0], (TranscriptTurn{meeting.turns[0].id, 0, 0, "Unassigned", "hello", {}})) << answer;
    }
}

TEST_F(Transcription, AFailedImportKeepsWhatThereIs) {
    std::ofstream(folder / "text.mp3") << "These are words and no audio.";
    await(store().importAudio(folder / "text.mp3"));
    EXPECT_EQ(store().error(), "Audio could not be converted to 16 kHz PCM. The original file was not changed.");
    EXPECT_EQ(statusesOnDisk, (Strings{"Preparing audio", "Import needs attention"}));

    engineAnswers(500, "model not loaded");
    await(store().importAudio(audioFile("a\xff.wav")));
    EXPECT_EQ(store().error(), "Transcription failed: model not loaded. Audio remains saved locally.");
    EXPECT_EQ(statusesOnDisk.back(), "Import needs attention");
    EXPECT_EQ(store().selected()->title, "a\xEF\xBF\xBD");

    engineAnswers(200, sixTurns);
    await(store().retryTranscription(*store().selectedID()));
    EXPECT_EQ(statusesOnDisk.back(), "Transcribed");
    EXPECT_EQ(store().error(), std::nullopt);

    const FileInTheWay noStorage(root);
    await(store().importAudio(audioFile("a.wav")));
    EXPECT_EQ(store().meetings().size(), 2U) << "without its record there is no meeting";
    EXPECT_NE(store().error(), std::nullopt);
}

TEST_F(Transcription, TranscribingAgainKeepsWhatItReplacesAndNamesTheSpeakersAnew) {
    const Uuid id = recorded();
    const Meeting before = onDisk(id);
    health.setScript([&](const TestServer::Request&, QTcpSocket& socket) {
        store().editTurn(store().meeting(id)->turns[0].id, "corrected meanwhile", id);
        socket.write(TestServer::response(200, sixTurns));
        socket.disconnectFromHost();
    });
    await(store().retryTranscription(id));
    EXPECT_EQ(statusesOnDisk.back(), "Transcribed");
    EXPECT_EQ(onDisk(id).turns.size(), 6U);
    EXPECT_EQ(onDisk(id).speakerNames, std::nullopt) << "the old names are not those of the new numbers";
    const auto versions = await(store().history(id)).entries;
    ASSERT_EQ(versions.size(), 2U);
    EXPECT_EQ(versions[0].meeting.turns.at(0).text(), "corrected meanwhile");
    EXPECT_EQ(versions[1].meeting, before);

    ASSERT_TRUE(eventually([&] { return onDisk(id).speakerNames.has_value(); }));
    EXPECT_EQ(*onDisk(id).speakerNames,
              (SpeakerAttribution::SpeakerNames{{"Speaker 0", "You"}, {"Speaker 1", "Guest"}}));
}

TEST_F(Transcription, AFailedRetryLeavesTheTranscriptAsItWas) {
    const Uuid id = recorded();
    Meeting expected = onDisk(id);
    expected.status = "Transcription needs attention";
    for (const int status : {500, 200}) {
        engineAnswers(status, "no JSON");
        await(store().retryTranscription(id));
        EXPECT_EQ(onDisk(id), expected) << status;
        EXPECT_TRUE(store().error().value_or("").starts_with("Saved audio and the previous transcript are retained: "))
            << status;
    }
    EXPECT_EQ(await(store().history(id)).entries.size(), 2U);

    fs::remove_all(repository.directory(id) / "history");
    std::ofstream(repository.directory(id) / "history") << "no folder";
    const auto asked = health.requests().size();
    await(store().retryTranscription(id));
    EXPECT_EQ(statusesOnDisk.back(), "Transcription needs attention");
    EXPECT_EQ(health.requests().size(), asked) << "nothing is replaced that could not be kept";
}

TEST_F(Transcription, CancellingEndsAsAFailureDoes) {
    engineIsSilent();
    const Uuid id = recorded();
    const Task<> retry = store().retryTranscription(id);
    ASSERT_TRUE(engineWasAsked());
    store().cancelAudioWork();
    EXPECT_TRUE(store().audioWork()->cancelling);
    ASSERT_TRUE(eventually([&] { return !store().busy(); }));
    EXPECT_EQ(store().error(),
              "Saved audio and the previous transcript are retained: The transcription was cancelled.");
    EXPECT_EQ(statusesOnDisk.back(), "Transcription needs attention");
    EXPECT_EQ(store().audioWork(), std::nullopt);

    const Task<> converted = store().importAudio(audioFile("a.wav"));
    ASSERT_TRUE(eventually([&] { return health.requests().size() == 2; }));
    store().cancelAudioWork();
    ASSERT_TRUE(eventually([&] { return !store().busy(); }));
    EXPECT_EQ(store().error(), "The import was cancelled. The converted audio was kept.");
    EXPECT_EQ(statusesOnDisk.back(), "Import needs attention");

    const Task<> converting = store().importAudio(longFile());
    ASSERT_TRUE(eventually([&] { return store().audioWork()->converted > 0; }));
    store().cancelAudioWork();
    ASSERT_TRUE(eventually([&] { return !store().busy(); }));
    EXPECT_EQ(store().error(), "The import was cancelled. The original file was not changed.");
    EXPECT_EQ(statusesOnDisk.back(), "Import needs attention");
    EXPECT_EQ(health.requests().size(), 2U);
}

TEST_F(Transcription, OneOperationAtATimeAndTheOthersAreRefusedSilently) {
    engineIsSilent();
    const Uuid id = recorded();
    store().setError("An earlier message");
    const Task<> importing = store().importAudio(audioFile("a.wav"));
    ASSERT_TRUE(engineWasAsked());
    const Uuid imported = store().audioWork()->meetingID;
    await(store().retryTranscription(id));
    await(store().importAudio(audioFile("b.wav")));
    await(store().startRecording());
    EXPECT_EQ(store().error(), std::nullopt);
    EXPECT_EQ(store().meetings().size(), 2U);
    EXPECT_EQ(store().deletionBlocker({imported}),
              "Wait for the current transcription or notes to finish, then delete.");
    EXPECT_EQ(store().audioWork()->meetingID, imported);
    store().cancelAudioWork();
    ASSERT_TRUE(eventually([&] { return !store().busy(); }));

    await(store().startRecording());
    await(store().retryTranscription(id));
    await(store().importAudio(audioFile("b.wav")));
    EXPECT_EQ(store().meetings().size(), 3U);
    EXPECT_EQ(onDisk(id).turns[0].originalText, "old");
}

TEST_F(Transcription, NamesMeasuredForAnotherTranscriptAreDropped) {
    const Uuid id = recorded();
    std::vector<TranscriptTurn> measured = onDisk(id).turns;
    const std::vector<TurnLevels> levels(3, TurnLevels{"Speaker 0", 0.5F, 0});
    measured[0].id = Uuid::random();
    store().applySpeakerNames(id, levels, measured);
    EXPECT_TRUE(statusesOnDisk.empty());

    measured[0] = onDisk(id).turns[0];
    store().editTurn(measured[0].id, "corrected", id);
    store().applySpeakerNames(id, levels, measured);
    EXPECT_EQ(onDisk(id).speakerName("Speaker 0"), "You") << "a corrected text is still the same turn";
}

TEST_F(Transcription, AStoreThatGoesDuringAConversionIsPutRightAtTheNextStart) {
    const Task<> importing = store().importAudio(longFile());
    const Uuid id = store().audioWork()->meetingID;
    ASSERT_TRUE(eventually([&] { return store().audioWork()->converted > 0; }));
    closeStore();
    ASSERT_TRUE(eventually([&] { return importing.isReady(); }));
    EXPECT_EQ(onDisk(id).status, "Preparing audio");
    openStore();
    EXPECT_EQ(store().meeting(id)->status, "Interrupted · check saved audio and retry");
    EXPECT_EQ(store().meeting(id)->audioFilename, std::nullopt);
}

} // namespace
} // namespace varnet::test
