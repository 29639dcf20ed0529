#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/records/MeetingHistory.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "MeetingCore/records/MeetingTrash.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TreeSnapshot.h"

#include <gmock/gmock.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

namespace fs = std::filesystem;
using namespace varnet;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr Date earlier{700'000'000}, now{800'000'000};
constexpr int syscallStop = SIGTRAP | 0x80;
constexpr int endedItself = -1;

/// Forks a process that does the work, and kills it at its n-th stop, counted from 0: it stops where it enters and
/// where it leaves each system call. A process that is killed where it enters one does not make the call. Gives n, or
/// endedItself when the work was done before that. Throws when it failed by itself or cannot be traced.
int killAtStop(int n, const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
            ::_exit(2);
        ::raise(SIGSTOP);
        try {
            work();
        } catch (...) {
            ::_exit(1);
        }
        ::_exit(0); // without the leak check, which cannot run while somebody traces
    }
    int status = 0;
    const auto wait = [&] {
        if (::waitpid(child, &status, 0) != child || (WIFEXITED(status) && WEXITSTATUS(status) != 0))
            throw std::runtime_error("the operation failed by itself, or may not be traced");
        return WIFSTOPPED(status);
    };
    if (!wait() || ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) != 0)
        throw std::runtime_error("this test must be allowed to use ptrace");
    for (int stop = -1;;) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        if (!wait())
            return endedItself;
        if (WSTOPSIG(status) != syscallStop || ++stop < n)
            continue;
        ::kill(child, SIGKILL);
        ::waitpid(child, &status, 0);
        return n;
    }
}

/// A killed process loses nothing that the kernel has, so the files need not wait for a disk.
fs::path memory() {
    return fs::is_directory("/dev/shm") ? "/dev/shm" : fs::temp_directory_path();
}

/// Where a meeting was found, and what it held.
struct Found {
    std::string place; ///< "library", "deleted" or "nowhere"
    Meeting meeting;
};

/// A meeting of a library with audio and one version, whose process is killed again and again.
class Crash : public testing::Test {
protected:
    Crash() {
        old = Meeting::make("old");
        old.turns.assign(40, {.end = 1, .speaker = "Speaker 1", .originalText = "as it was", .editedText = {}});
        changed = version = old;
        changed.notes = "changed";
        version.notes = "of the version";
    }

    /// Begins again with the meeting as it was.
    void reset() {
        fs::remove_all(folder / "store");
        const MeetingRepository library = repository();
        library.save(old);
        library.archiveBeforeTranscription(version);
        writeFileAtomically(library.directory(old.id) / "meeting.wav", "audio");
        // A marker that an earlier restore could not remove.
        writeFileAtomically(library.directory(old.id) / "deleted.json", "{\"deletedAt\": 0}");
    }

    MeetingRepository repository() const { return MeetingRepository(folder / "store/library"); }

    /// Finds the meeting, whole and in one place.
    Found find() const {
        const LoadedMeetings library = repository().loadRecovering();
        const auto deleted = repository().loadDeleted(now);
        EXPECT_THAT(library.unreadable, IsEmpty());
        EXPECT_LE(library.meetings.size() + deleted.size(), 1u);
        if (library.meetings.empty() && deleted.empty())
            return {"nowhere", {}};
        const bool inLibrary = !library.meetings.empty();
        const fs::path place = inLibrary ? repository().directory(old.id) : repository().deletedDirectory(old.id);
        EXPECT_EQ(readFile(place / "meeting.wav"), "audio");
        if (inLibrary)
            return {"library", library.meetings.front()};
        EXPECT_THAT(deleted.front().deletedAt, AnyOf(earlier, now));
        return {"deleted", deleted.front().meeting};
    }

    /// The notes of the versions of the meeting in the library, none of them damaged.
    std::vector<std::string> versions() const {
        const MeetingHistory history = repository().history(old.id);
        EXPECT_EQ(history.unreadable, 0u);
        std::vector<std::string> notes;
        for (const MeetingHistoryEntry& entry : history.entries)
            notes.push_back(entry.meeting.notes);
        return notes;
    }

    /// Kills the work at every stop. Each time it must have had its effect or none, and then be possible again.
    /// `happened` looks at everything and tells whether the work had its effect.
    void killEverywhere(
        const std::function<void()>& work, const std::function<bool()>& happened,
        const std::function<void()>& prepare = [] {}) {
        int stop = 0, without = 0;
        for (bool killed = true; killed && !HasFailure(); ++stop) {
            SCOPED_TRACE(stop);
            reset();
            prepare();
            killed = killAtStop(stop, work) == stop;
            const bool done = happened();
            EXPECT_TRUE(killed || done);
            without += !done;
            if (done)
                continue;
            work();
            EXPECT_TRUE(happened());
        }
        EXPECT_GT(without, 4);        // some were killed before the effect,
        EXPECT_GT(stop - without, 1); // and some after it
    }

    test::TemporaryFolder folder{memory()};
    Meeting old, changed, version;
};

} // namespace

TEST_F(Crash, InSaveLeavesTheOldOrTheNewRecord) {
    const auto saved = [&] {
        const Found found = find();
        EXPECT_EQ(found.place, "library");
        EXPECT_THAT(found.meeting, AnyOf(old, changed));
        EXPECT_THAT(versions(), ElementsAre("of the version"));
        return found.meeting == changed;
    };
    killEverywhere([&] { repository().save(changed); }, saved);
}

TEST_F(Crash, InFirstSaveLeavesTheWholeMeetingOrNone) {
    const auto saved = [&] {
        const auto library = repository().loadRecovering();
        EXPECT_THAT(library.unreadable, IsEmpty());
        EXPECT_THAT(library.meetings, AnyOf(IsEmpty(), ElementsAre(changed)));
        return !library.meetings.empty();
    };
    killEverywhere([&] { repository().save(changed); }, saved, [&] { fs::remove_all(folder / "store"); });
}

TEST_F(Crash, InRestoringAVersionKeepsWhatWasReplaced) {
    MeetingHistoryEntry entry;
    Meeting restored = old;
    restored.notes = version.notes;
    const auto restore = [&] {
        repository().restore(
            entry, {.personalNotes = true},
            {.current = MeetingRestoration::revision(old), .archived = MeetingRestoration::revision(version)});
    };
    const auto happened = [&] {
        const Found found = find();
        const auto notes = versions();
        EXPECT_THAT(found.meeting, AnyOf(old, restored));
        EXPECT_THAT(notes, testing::Contains("of the version"));
        EXPECT_TRUE(found.meeting == old || notes.size() > 1) << "the replaced record is lost";
        return found.meeting == restored;
    };
    killEverywhere(restore, happened, [&] { entry = repository().history(old.id).entries.at(0); });
}

TEST_F(Crash, InMovingLeavesTheWholeMeetingInOnePlace) {
    const auto remove = [&] { repository().moveToDeleted(old.id, earlier); };
    const struct {
        const char *name, *from, *to;
        std::function<void()> prepare, work;
    } moves[] = {
        {"deleting", "library", "deleted", [] {}, remove},
        {"bringing back", "deleted", "library", remove, [&] { repository().restoreDeleted(old.id); }},
        {"erasing", "deleted", "nowhere", remove, [&] { repository().eraseDeleted(old.id); }},
    };
    for (const auto& move : moves) {
        SCOPED_TRACE(move.name);
        const auto moved = [&] {
            const Found found = find();
            EXPECT_THAT(found.place, AnyOf(move.from, move.to));
            EXPECT_THAT(repository().eraseExpired(now, 1e8 + 1), IsEmpty()); // nothing early
            EXPECT_EQ(find().place, found.place);
            if (found.place == "nowhere")
                EXPECT_THAT(test::treeOf(repository().deletedRoot()), IsEmpty()); // the rest is removed
            else
                EXPECT_EQ(found.meeting, old);
            return found.place == move.to;
        };
        killEverywhere(move.work, moved, move.prepare);
    }
}

TEST_F(Crash, InCreatingARecordingLeavesNoFileWithoutAHeader) {
    const fs::path recording = folder / "meeting.wav";
    const auto created = [&] {
        if (!fs::exists(recording))
            return false;
        DurableWAV::repair(recording); // refuses a file without its header
        return true;
    };
    killEverywhere([&] { DurableWAV file(recording); }, created, [&] { fs::remove(recording); });
}
