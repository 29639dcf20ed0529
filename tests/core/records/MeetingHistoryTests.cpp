#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Sha256.h"
#include "MeetingCore/records/MeetingHistory.h"
#include "MeetingCore/records/MeetingJson.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"
#include "tests/support/TreeSnapshot.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <functional>

namespace fs = std::filesystem;
using namespace varnet;
using testing::IsEmpty;
using Kind = MeetingHistoryError::Kind;

namespace {

/// A meeting "now" with one version "then" that differs in all that can be restored.
class MeetingHistoryOnDisk : public testing::Test {
protected:
    MeetingHistoryOnDisk() {
        archived.notes = "then";
        archived.turns = {{.start = 1, .end = 2, .speaker = "Speaker 1", .originalText = "then", .editedText = {}}};
        archived.speakerNames.emplace()["Speaker 1"] = "Ada";
        archived.generatedNotes.emplace().model = "then";
        archived.audioFilename = current.audioFilename = "meeting.wav";
        current.notes = "now";
        current.id = archived.id;
        repository.save(current);
        repository.archiveBeforeTranscription(archived);
        entry = repository.history(archived.id).entries.at(0);
    }

    fs::path historyFolder() const { return repository.directory(current.id) / "history"; }
    fs::path versionPath() const { return historyFolder() / (entry.id.text() + ".json"); }

    MeetingRevisions revisions() const {
        return {.current = MeetingRestoration::revision(current), .archived = MeetingRestoration::revision(archived)};
    }

    /// What a restore that must fail says; "" if it does not, or if it changed anything.
    std::string refusal(MeetingRestoreOptions options = {.personalNotes = true}) {
        const auto before = test::treeOf(folder.path());
        const auto sentence = test::sentenceThrown([&] { repository.restore(entry, options, revisions()); });
        return test::treeOf(folder.path()) == before ? sentence : "";
    }

    test::TemporaryFolder folder;
    MeetingRepository repository{folder / "library"};
    Meeting archived = Meeting::make("meeting"), current = archived;
    MeetingHistoryEntry entry;
};

std::string sentence(Kind kind) {
    return MeetingHistoryError(kind).what();
}

} // namespace

TEST_F(MeetingHistoryOnDisk, ListsVersionsNewestFirstAndIgnoresOtherFiles) {
    repository.archiveBeforeTranscription(current);
    fs::last_write_time(versionPath(), fs::file_time_type::clock::now() - std::chrono::hours(1));
    writeFileAtomically(historyFolder() / "notes.json", "no version");
    writeFileAtomically(historyFolder() / ("." + Uuid::random().text() + ".json.a1b2c3"), "cut short");

    const MeetingHistory history = repository.history(current.id);
    ASSERT_EQ(history.entries.size(), 2u);
    EXPECT_EQ(history.unreadable, 0u);
    EXPECT_EQ(history.entries[0].meeting, current);
    EXPECT_EQ(history.entries[1].meeting, archived);
    EXPECT_EQ(history.entries[1].id, entry.id);
    EXPECT_NEAR(Date::now().secondsSinceReference - history.entries[1].archivedAt.secondsSinceReference, 3600, 60);
    EXPECT_EQ(MeetingRestoration::revision(archived), sha256(readFile(versionPath())));

    fs::remove_all(historyFolder());
    EXPECT_THAT(repository.history(current.id).entries, IsEmpty());
}

TEST_F(MeetingHistoryOnDisk, EveryLieIsCountedHidesNoOtherVersionAndIsNotRestored) {
    const fs::path good = folder / "good.json";
    writeFileAtomically(good, encodeMeeting(archived));
    Meeting other = archived, edited = archived;
    other.id = Uuid::random();
    edited.notes = "planted";
    repository.archiveBeforeTranscription(current);

    const struct {
        const char* name;
        std::function<void(const fs::path&)> plant;
        std::string sentence;
        std::size_t unreadable = 1;
    } rows[] = {
        {"link to a valid version", [&](auto& at) { fs::create_symlink(good, at); }, sentence(Kind::invalidLocation)},
        {"pipe", [&](auto& at) { ASSERT_EQ(::mkfifo(at.c_str(), 0600), 0); }, sentence(Kind::invalidLocation)},
        {"version of another meeting", [&](auto& at) { writeFileAtomically(at, encodeMeeting(other)); },
         sentence(Kind::wrongMeeting)},
        {"cut short", [&](auto& at) { writeFileAtomically(at, encodeMeeting(archived).substr(0, 100)); },
         "The data is not valid"},
        {"changed since the preview", [&](auto& at) { writeFileAtomically(at, encodeMeeting(edited)); },
         sentence(Kind::changed), 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        fs::remove_all(versionPath());
        row.plant(versionPath());
        const MeetingHistory history = repository.history(current.id);
        EXPECT_EQ(history.unreadable, row.unreadable);
        EXPECT_EQ(history.entries.size(), 2 - row.unreadable);
        EXPECT_THAT(refusal(), testing::HasSubstr(row.sentence));
    }
}

TEST_F(MeetingHistoryOnDisk, FoldersThatAreLinksAreRefused) {
    const fs::path outside = folder / "outside";
    fs::rename(historyFolder(), outside);
    for (const fs::path& target : {outside, folder / "nowhere", historyFolder()}) {
        fs::create_symlink(target, historyFolder());
        EXPECT_THROW(repository.history(current.id), MeetingHistoryError) << target;
        EXPECT_EQ(refusal(), sentence(Kind::invalidLocation)) << target;
        fs::remove(historyFolder());
    }
    fs::rename(outside, historyFolder());
    fs::rename(repository.directory(current.id), outside);
    fs::create_directory_symlink(outside, repository.directory(current.id));
    EXPECT_THROW(repository.history(current.id), MeetingHistoryError);
    EXPECT_EQ(refusal(), sentence(Kind::invalidLocation));
}

TEST_F(MeetingHistoryOnDisk, RecordThatIsNotTheOneOfThePreviewIsNotReplaced) {
    Meeting edited = current;
    edited.title = "edited";
    repository.save(edited);
    EXPECT_EQ(refusal(), sentence(Kind::changed));
    const fs::path record = repository.directory(current.id) / "meeting.json";
    fs::rename(record, folder / "elsewhere.json");
    EXPECT_EQ(refusal(), sentence(Kind::invalidLocation));
    fs::create_symlink(folder / "elsewhere.json", record);
    EXPECT_EQ(refusal(), sentence(Kind::invalidLocation));
}

TEST_F(MeetingHistoryOnDisk, RestoresWhatIsWantedAndKeepsWhatWas) {
    EXPECT_EQ(refusal({}), sentence(Kind::noSelection));
    const Meeting notes = repository.restore(entry, {.personalNotes = true}, revisions());
    Meeting wanted = current;
    wanted.notes = "then";
    EXPECT_EQ(notes, wanted);
    EXPECT_EQ(repository.load(current.id), wanted);

    const MeetingRevisions now{.current = MeetingRestoration::revision(wanted), .archived = revisions().archived};
    wanted = repository.restore(entry, {.transcript = true, .generatedNotes = true}, now);
    EXPECT_EQ(wanted.turns, archived.turns);
    EXPECT_EQ(wanted.speakerNames, archived.speakerNames);
    EXPECT_EQ(wanted.generatedNotes, archived.generatedNotes);
    EXPECT_EQ(wanted.status, "Transcript restored");
    const auto of = [](const Meeting& one) { return testing::Field(&MeetingHistoryEntry::meeting, one); };
    EXPECT_THAT(repository.history(current.id).entries,
                testing::UnorderedElementsAre(of(notes), of(current), of(archived)));
}

TEST_F(MeetingHistoryOnDisk, TranscriptReturnsOnlyToItsAudio) {
    for (const auto& audio : {std::optional<std::string>("imported.wav"), std::optional<std::string>()}) {
        current.audioFilename = audio;
        repository.save(current);
        EXPECT_EQ(refusal({.transcript = true, .personalNotes = true}), sentence(Kind::differentAudio));
    }
    EXPECT_EQ(repository.restore(entry, {.personalNotes = true}, revisions()).notes, "then");
    archived.audioFilename = {};
    EXPECT_EQ(MeetingRestoration::preview(current, archived, {.transcript = true}).turns, archived.turns);
    archived.id = Uuid::random();
    EXPECT_THROW(MeetingRestoration::preview(current, archived, {}), MeetingHistoryError);
}
