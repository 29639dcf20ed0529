#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Failures.h"
#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/capture/CaptureLevels.h"
#include "Varnet/platform/LoopbackHTTP.h"
#include "Varnet/store/MeetingPresentation.h"
#include "Varnet/store/MeetingStore.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestServer.h"

#include <gtest/gtest.h>

#include <fstream>

namespace varnet::test {
namespace {

namespace fs = std::filesystem;

class MeetingStoreTest : public ::testing::Test {
protected:
    Meeting saved(std::string title, std::string_view status, std::optional<std::string> audio = {}, double age = 0) {
        Meeting meeting = Meeting::make(std::move(title));
        meeting.status = status;
        meeting.audioFilename = std::move(audio);
        meeting.createdAt.secondsSinceReference -= age;
        repository.save(meeting);
        return meeting;
    }

    fs::path file(const Meeting& meeting, const char* name) const { return repository.directory(meeting.id) / name; }

    void write(const fs::path& path, std::string_view bytes) { std::ofstream(path, std::ios::binary) << bytes; }

    /// What a crash leaves of a recording: audio behind a header that counts none of it.
    void writeUnclosed(const fs::path& path, std::size_t audioBytes) {
        DurableWAV wav(folder / "recording.wav");
        wav.append(std::vector<std::byte>(audioBytes));
        fs::copy_file(folder / "recording.wav", path);
    }

    static unsigned audioBytesInHeader(const fs::path& path) {
        const std::string bytes = readFile(path).substr(40, 4);
        unsigned size = 0;
        for (int i = 3; i >= 0; --i)
            size = size * 256 + static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]);
        return size;
    }

    TemporaryFolder folder;
    fs::path root = folder / "meetings";
    MeetingRepository repository{root};
};

TEST_F(MeetingStoreTest, MarksWhatACrashInterruptedAndRepairsItsAudio) {
    std::vector<Meeting> interrupted;
    for (const auto* status : {"Preparing microphone", "Recording · transcription offline",
                               "Recording · live transcript", "Finishing transcript", "Preparing audio",
                               "Transcribing and assigning speakers", "Capture incomplete · check saved audio"}) {
        interrupted.push_back(saved(status, status, "microphone.wav"));
        writeUnclosed(file(interrupted.back(), "microphone.wav"), 640);
    }
    const Meeting bothTracks = saved("Both", "Recording · live transcript", "meeting.wav");
    for (const auto* name : {"meeting.wav", "microphone.wav", "system.wav"})
        writeUnclosed(file(bothTracks, name), 320);
    const Meeting imported = saved("Import", "Preparing audio", "imported.wav");
    write(file(imported, "imported.wav"), "not ours");
    const Meeting silent = saved("Silent", "Preparing microphone");
    interrupted.insert(interrupted.end(), {bothTracks, imported, silent});

    const MeetingStore store(root);
    EXPECT_EQ(store.error(), std::nullopt);
    for (const auto& meeting : interrupted) {
        EXPECT_EQ(store.meeting(meeting.id)->status, "Interrupted · check saved audio and retry") << meeting.title;
        EXPECT_EQ(repository.load(meeting.id).status, "Interrupted · check saved audio and retry") << meeting.title;
        if (meeting.audioFilename == "microphone.wav")
            EXPECT_EQ(audioBytesInHeader(file(meeting, "microphone.wav")), 640U) << meeting.title;
    }
    for (const auto* name : {"meeting.wav", "microphone.wav", "system.wav"})
        EXPECT_EQ(audioBytesInHeader(file(bothTracks, name)), 320U) << name;
    EXPECT_EQ(readFile(file(imported, "imported.wav")), "not ours");
}

TEST_F(MeetingStoreTest, LeavesFinishedMeetingsAndAnotherProcessesRecordingAlone) {
    std::vector<Meeting> finished;
    for (const auto* status : {"Ready", "Recording did not start", "Audio saved · live transcript",
                               "Audio saved · retry transcription", "Interrupted · check saved audio and retry"})
        finished.push_back(saved(status, status, "microphone.wav"));
    {
        const MeetingStore store(root);
        for (const auto& meeting : finished)
            EXPECT_EQ(*store.meeting(meeting.id), meeting) << meeting.title;
    }
    const Meeting running = saved("Running", "Recording · live transcript", "microphone.wav");
    writeUnclosed(file(running, "microphone.wav"), 640);
    StoreParts parts;
    parts.writable = false;
    const MeetingStore onlyLooking(root, parts);
    EXPECT_EQ(repository.load(running.id), running);
    EXPECT_EQ(audioBytesInHeader(file(running, "microphone.wav")), 0U);
}

TEST_F(MeetingStoreTest, TellsEveryFileThatCouldNotBeRepairedAndEveryRecordThatCouldNotBeRead) {
    fs::create_directories(root / "damaged");
    write(root / "damaged" / "meeting.json", "");
    {
        const MeetingStore store(root);
        EXPECT_EQ(store.error(), "1 meeting record(s) could not be read. Their files have been preserved in meeting "
                                 "storage.");
    }
    const Meeting broken = saved("Standup", "Finishing transcript", "meeting.wav");
    writeUnclosed(file(broken, "meeting.wav"), 320);
    write(file(broken, "microphone.wav"), "garbage");
    const Meeting lost = saved("Review", "Preparing microphone", "microphone.wav", 60);

    const MeetingStore store(root);
    EXPECT_EQ(store.error(), "1 meeting record(s) could not be read. Their files have been preserved in meeting "
                             "storage.\nSome interrupted audio could not be repaired automatically. Existing files "
                             "were preserved: Standup: microphone.wav; Standup: missing system.wav; Review: missing "
                             "microphone.wav");
    EXPECT_EQ(audioBytesInHeader(file(broken, "meeting.wav")), 320U);
    EXPECT_EQ(readFile(file(broken, "microphone.wav")), "garbage");
    EXPECT_EQ(readFile(root / "damaged" / "meeting.json"), "");
    EXPECT_EQ(store.meetings().size(), 2U);
}

TEST_F(MeetingStoreTest, RunsOnWithoutStorage) {
    write(folder / "file", "");
    MeetingStore store(folder / "file" / "meetings");
    ASSERT_TRUE(store.error());
    EXPECT_TRUE(store.error()->starts_with("Could not open meeting storage: ")) << *store.error();
    const auto message = store.error();

    try {
        store.create("Lost");
        FAIL() << "create did not throw";
    } catch (const Failure& failure) {
        EXPECT_STREQ(failure.what(), "Meeting storage is unavailable");
    }
    await(store.startRecording());
    EXPECT_FALSE(store.busy());
    EXPECT_FALSE(store.recordingID());
    EXPECT_EQ(store.error(), message);
    EXPECT_TRUE(store.meetings().empty());
}

TEST_F(MeetingStoreTest, SelectionOfMeetingAndLibraryKeepEachOtherInStep) {
    const Uuid a = saved("A", "Ready").id, b = saved("B", "Ready", {}, 60).id, c = saved("C", "Ready", {}, 120).id;
    MeetingStore store(root);
    const auto expect = [&](const char* step, std::optional<Uuid> id, const std::set<Uuid>& rows) {
        EXPECT_EQ(store.selectedID(), id) << step;
        EXPECT_EQ(store.librarySelection(), rows) << step;
    };
    expect("newest first at the start", a, {a});
    store.setLibrarySelection({b});
    expect("one row", b, {b});
    store.setLibrarySelection({a, c});
    expect("two rows keep the meeting", b, {a, c});
    store.setSelectedID(c);
    expect("a meeting among the rows keeps them", c, {a, c});
    store.setSelectedID(b);
    expect("a meeting outside the rows replaces them", b, {b});
    store.setLibrarySelection({});
    expect("no row keeps the meeting", b, {});
    store.setSelectedID({});
    store.setLibrarySelection({a, b});
    store.setSelectedID({});
    expect("no meeting empties the rows", {}, {});
    EXPECT_EQ(store.selected(), nullptr);
}

TEST_F(MeetingStoreTest, EditsAreStoredAndTellTheirMeeting) {
    Meeting meeting = Meeting::make("Before");
    TranscriptTurn turn;
    turn.speaker = "Speaker 1";
    turn.originalText = "as heard";
    meeting.turns = {turn};
    repository.save(meeting);
    const Meeting other = saved("Other", "Ready", {}, 60);

    MeetingStore store(root);
    std::vector<Uuid> changed;
    QObject::connect(&store, &MeetingStore::meetingChanged, &store, [&](Uuid id) { changed.push_back(id); });
    const auto stored = [&] { return repository.load(meeting.id); };

    store.setTitle(" \u00a0After\n", meeting.id);
    EXPECT_EQ(stored().title, "After");
    store.setTitle(" \t\n", meeting.id);
    EXPECT_EQ(stored().title, "After");
    store.setTitle("Caf\xe9", meeting.id);
    EXPECT_EQ(stored().title, "Caf\xEF\xBF\xBD") << "a record must stay readable";

    store.editTurn(turn.id, " as meant ", meeting.id);
    EXPECT_EQ(stored().turns[0].editedText, " as meant ");
    store.editTurn(turn.id, "as heard", meeting.id);
    EXPECT_EQ(stored().turns[0].editedText, std::nullopt);

    using Names = std::map<std::string, std::string>;
    store.nameSpeaker("Speaker 1", "  ", meeting.id);
    EXPECT_EQ(stored().speakerNames, Names());
    store.nameSpeaker("Speaker 1", " Ann ", meeting.id);
    EXPECT_EQ(stored().speakerNames, (Names{{"Speaker 1", "Ann"}}));
    store.nameSpeaker("Speaker 1", "Speaker 1", meeting.id);
    EXPECT_EQ(stored().speakerNames, Names());

    store.setNotes("of the selected");
    store.setNotes("of the other\n", other.id);
    EXPECT_EQ(stored().notes, "of the selected");
    EXPECT_EQ(repository.load(other.id).notes, "of the other\n");
    store.setTitle("Nobody", Uuid::random());

    EXPECT_EQ(std::ranges::count(changed, meeting.id), 8);
    EXPECT_EQ(std::ranges::count(changed, other.id), 1);
    EXPECT_EQ(changed.size(), 9U);
}

TEST_F(MeetingStoreTest, AFailedSaveKeepsTheEditUntilARetrySucceeds) {
    const Meeting meeting = saved("Kept", "Ready");
    MeetingStore store(root);
    fs::rename(repository.directory(meeting.id), folder / "aside");
    write(repository.directory(meeting.id), "a file where the folder should be");

    store.setTitle("Edited", meeting.id);
    EXPECT_EQ(store.meeting(meeting.id)->title, "Edited");
    ASSERT_EQ(store.saveFailures().size(), 1U);
    EXPECT_FALSE(store.saveFailures().at(meeting.id).empty());
    EXPECT_EQ(store.error(), std::nullopt);
    EXPECT_FALSE(store.retrySaving());

    fs::remove(repository.directory(meeting.id));
    fs::rename(folder / "aside", repository.directory(meeting.id));
    EXPECT_TRUE(store.retrySaving());
    EXPECT_TRUE(store.saveFailures().empty());
    EXPECT_EQ(repository.load(meeting.id).title, "Edited");
}

TEST_F(MeetingStoreTest, ANewMeetingIsStoredPrivatelyAndComesFirst) {
    saved("Old", "Ready", {}, 60);
    MeetingStore store(root);
    std::vector<Uuid> inserted;
    QObject::connect(&store, &MeetingStore::meetingInserted, &store, [&](Uuid id) { inserted.push_back(id); });

    const Meeting meeting = store.create("New");
    EXPECT_EQ(inserted, std::vector{meeting.id});
    EXPECT_EQ(store.meetings().front(), meeting);
    EXPECT_EQ(store.selectedID(), meeting.id);
    EXPECT_EQ(repository.load(meeting.id), meeting);
    EXPECT_EQ(fs::status(repository.directory(meeting.id)).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(file(meeting, "meeting.json")).permissions(), fs::perms::owner_read | fs::perms::owner_write);

    write(folder / "aside", "");
    fs::rename(root, folder / "moved");
    fs::rename(folder / "aside", root);
    EXPECT_THROW(store.create("Nowhere"), FileFailure);
    EXPECT_EQ(store.meetings().size(), 2U);
    EXPECT_EQ(store.selectedID(), meeting.id);
}

TEST_F(MeetingStoreTest, AudioIsAPlainFileInTheMeetingsFolder) {
    Meeting meeting = saved("Audio", "Ready", "meeting.wav");
    const MeetingStore store(root);
    EXPECT_EQ(store.audioURL(meeting), std::nullopt) << "no such file";
    write(file(meeting, "meeting.wav"), "");
    EXPECT_EQ(store.audioURL(meeting), file(meeting, "meeting.wav"));

    write(root / "x.wav", "");
    for (const auto* name : {"../x.wav", "/etc/passwd", "..", ".", "", "sub/meeting.wav", "meeting.wav/"}) {
        meeting.audioFilename = name;
        EXPECT_EQ(store.audioURL(meeting), std::nullopt) << name;
    }
    meeting.audioFilename.reset();
    EXPECT_EQ(store.audioURL(meeting), std::nullopt);
}

TEST_F(MeetingStoreTest, AnEngineIsReadyExactlyWhenItsHealthCheckAnswers200) {
    TestServer speech, notes;
    StoreParts parts;
    parts.speechURL = speech.url(QString());
    parts.notesURL = notes.url(QString());
    MeetingStore store(root, parts);

    notes.answer(TestServer::response(200, "ok"));
    await(store.checkNotesRuntime());
    EXPECT_TRUE(store.notesRuntimeReady());
    EXPECT_EQ(notes.requests().at(0).target, "/health");

    for (const auto& [reply, ready] : std::vector<std::pair<QByteArray, bool>>{
             {TestServer::response(200, "ok"), true},
             {TestServer::response(302, {}, "Location: " + notes.url(QStringLiteral("/health")).toEncoded() + "\r\n"),
              false},
             {TestServer::response(200, "ok"), true},
             {TestServer::response(503, "loading"), false},
             {"no http\r\n\r\n", false}}) {
        speech.answer(reply);
        await(store.checkRuntime());
        EXPECT_EQ(store.runtimeReady(), ready) << reply.toStdString();
    }
    EXPECT_EQ(speech.requests().at(0).target, "/health");
}

TEST_F(MeetingStoreTest, BadgeIsDecidedByTheFirstRuleThatHolds) {
    const MeetingStore store(root);
    struct Row {
        const char* status;
        bool notes, turns, audio;
        StatusBadge badge;
    };
    const StatusBadge working{"Working", BadgeColor::amber, true};
    const StatusBadge attention{"Needs attention", BadgeColor::rec, true};
    const StatusBadge notesReady{"Notes ready", BadgeColor::ok, false};
    const StatusBadge transcriptOnly{"Transcript only", BadgeColor::faint, true};
    const std::vector<Row> rows{
        {"Finishing transcript", true, true, true, working},
        {"Preparing audio", true, true, true, working},
        {"Preparing microphone", true, true, true, working},
        {"Transcribing and assigning speakers", true, true, true, working},
        {"Recording did not start", true, true, true, {"No audio saved", BadgeColor::rec, false}},
        {"Interrupted · check saved audio and retry", true, true, true, attention},
        {"Transcription needs attention", true, true, true, attention},
        {"Capture incomplete · check saved audio", true, true, true, attention},
        {"Audio saved · retry transcription", false, false, true, {"Needs transcript", BadgeColor::amber, true}},
        {"Audio saved · retry transcription", false, true, true, {"Transcript incomplete", BadgeColor::amber, true}},
        {"Audio saved · retry transcription", true, true, true, notesReady},
        {"Transcribed", true, false, false, notesReady},
        {"Recording · live transcript", true, true, true, notesReady},
        {"Scheduled · ready to record", false, true, false, transcriptOnly},
        {"Audio saved · live transcript", false, true, true, transcriptOnly},
        {"Scheduled · ready to record", false, false, true, {"Scheduled", BadgeColor::faint, true}},
        {"Cancelled · calendar event", false, false, true, {"Cancelled", BadgeColor::faint, true}},
        {"Audio saved · live transcript", false, false, true, {"Audio only", BadgeColor::faint, true}},
        {"Ready", false, false, false, {"Empty", BadgeColor::faint, true}},
    };
    for (const auto& row : rows) {
        Meeting meeting;
        meeting.status = row.status;
        if (row.notes)
            meeting.generatedNotes.emplace();
        meeting.turns.resize(row.turns ? 1 : 0);
        if (row.audio)
            meeting.audioFilename = "meeting.wav";
        EXPECT_EQ(MeetingPresentation::badge(meeting, store), row.badge) << row.status;
    }
}

} // namespace
} // namespace varnet::test
