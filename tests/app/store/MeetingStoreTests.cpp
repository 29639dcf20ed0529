#include "MeetingCore/audio/DurableWAV.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/WavFile.h"

namespace varnet::test {
namespace {

namespace fs = std::filesystem;

class MeetingStoreTest : public StoreFixture {
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

    /// What a crash leaves of a recording: audio behind a header that counts none of it.
    void writeUnclosed(const fs::path& path, std::size_t audioBytes) {
        DurableWAV wav(folder / "recording.wav");
        wav.append(std::vector<std::byte>(audioBytes));
        fs::copy_file(folder / "recording.wav", path);
    }
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
    std::ofstream(file(imported, "imported.wav")) << "not ours";
    const Meeting silent = saved("Silent", "Preparing microphone");
    interrupted.insert(interrupted.end(), {bothTracks, imported, silent});

    openStore();
    EXPECT_EQ(store().error(), std::nullopt);
    for (const auto& meeting : interrupted) {
        EXPECT_EQ(store().meeting(meeting.id)->status, "Interrupted · check saved audio and retry") << meeting.title;
        EXPECT_EQ(*store().meeting(meeting.id), onDisk(meeting.id)) << meeting.title;
        if (meeting.audioFilename == "microphone.wav")
            EXPECT_EQ(declaredBytes(file(meeting, "microphone.wav")), 640U) << meeting.title;
    }
    for (const auto* name : {"meeting.wav", "microphone.wav", "system.wav"})
        EXPECT_EQ(declaredBytes(file(bothTracks, name)), 320U) << name;
    EXPECT_EQ(readFile(file(imported, "imported.wav")), "not ours");
}

TEST_F(MeetingStoreTest, LeavesFinishedMeetingsAndAnotherProcessesRecordingAlone) {
    const Meeting finished = saved("Finished", "Audio saved · retry transcription", "microphone.wav");
    openStore();
    EXPECT_EQ(*store().meeting(finished.id), finished);
    const Meeting running = saved("Running", "Recording · live transcript", "microphone.wav");
    writeUnclosed(file(running, "microphone.wav"), 640);
    StoreParts parts;
    parts.writable = false;
    const MeetingStore onlyLooking(root, parts);
    EXPECT_EQ(onDisk(running.id), running);
    EXPECT_EQ(declaredBytes(file(running, "microphone.wav")), 0U);
}

TEST_F(MeetingStoreTest, TellsEveryFileThatCouldNotBeRepairedAndEveryRecordThatCouldNotBeRead) {
    fs::create_directories(root / "damaged");
    std::ofstream(root / "damaged" / "meeting.json").flush();
    openStore();
    const std::string unreadable =
        "1 meeting record(s) could not be read. Their files have been preserved in meeting storage.";
    EXPECT_EQ(store().error(), unreadable);
    const Meeting broken = saved("Standup", "Finishing transcript", "meeting.wav");
    writeUnclosed(file(broken, "meeting.wav"), 320);
    std::ofstream(file(broken, "microphone.wav")) << "garbage";
    saved("Review", "Preparing microphone", "microphone.wav", 60);

    openStore();
    EXPECT_EQ(store().error(), unreadable + "\nSome interrupted audio could not be repaired automatically. Existing "
                                            "files were preserved: Standup: microphone.wav; Standup: missing "
                                            "system.wav; Review: missing microphone.wav");
    EXPECT_EQ(declaredBytes(file(broken, "meeting.wav")), 320U);
    EXPECT_EQ(readFile(file(broken, "microphone.wav")), "garbage");
    EXPECT_EQ(readFile(root / "damaged" / "meeting.json"), "");
}

TEST_F(MeetingStoreTest, RunsOnWithoutStorage) {
    const FileInTheWay noStorage(root);
    openStore();
    const auto message = store().error();
    ASSERT_TRUE(message);
    EXPECT_TRUE(message->starts_with("Could not open meeting storage: ")) << *message;
    EXPECT_THROW(store().create("Lost"), Failure);
    await(store().startRecording());
    EXPECT_FALSE(store().busy());
    EXPECT_EQ(store().error(), message);
    EXPECT_TRUE(store().meetings().empty());
}

TEST_F(MeetingStoreTest, NamesAreStoredInTheirPlainForm) {
    const Meeting meeting = saved("Before", "Ready");
    openStore();
    const std::pair<const char*, const char*> names[] = {
        {" \u00a0After\n", "After"}, {" \t\n", "After"}, {"Caf\xe9", "Caf\xEF\xBF\xBD"}}; // a record stays readable
    for (const auto& [name, expected] : names) {
        store().setTitle(name, meeting.id);
        EXPECT_EQ(onDisk(meeting.id).title, expected);
    }
    store().nameSpeaker("Speaker 1", " Ann ", meeting.id);
    EXPECT_EQ(onDisk(meeting.id).speakerName("Speaker 1"), "Ann");
    store().nameSpeaker("Speaker 1", "  ", meeting.id);
    EXPECT_EQ(onDisk(meeting.id).speakerName("Speaker 1"), "Speaker 1");
}

TEST_F(MeetingStoreTest, AudioIsAPlainFileInTheMeetingsFolder) {
    Meeting meeting = saved("Audio", "Ready", "meeting.wav");
    EXPECT_EQ(store().audioURL(meeting), std::nullopt) << "no such file";
    std::ofstream(file(meeting, "meeting.wav")).flush();
    EXPECT_EQ(store().audioURL(meeting), file(meeting, "meeting.wav"));

    std::ofstream(root / "x.wav").flush();
    for (const auto* name : {"../x.wav", "/etc/passwd", "..", ".", "", "sub/meeting.wav", "meeting.wav/"}) {
        meeting.audioFilename = name;
        EXPECT_EQ(store().audioURL(meeting), std::nullopt) << name;
    }
}

} // namespace
} // namespace varnet::test
