#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/records/MeetingJson.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>
#include <map>

namespace fs = std::filesystem;
using namespace varnet;

namespace {

Meeting meetingOf(int number) {
    Meeting meeting = Meeting::make("Meeting " + std::to_string(number));
    meeting.turns = {{Uuid::random(), 0, 1.5, "Speaker 1", "“Hello”", {}},
                     {Uuid::random(), 1.5, 2, "Speaker 2", "Yes.", ""}};
    return meeting;
}

void write(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string replaced(std::string document, std::string_view from, std::string_view to) {
    const std::size_t at = document.find(from);
    if (at == document.npos)
        throw std::logic_error("the record has no " + std::string(from));
    return document.replace(at, from.size(), to);
}

/// Writes a damaged form of the record's bytes to the path.
using Damage = std::function<void(const fs::path&, const std::string&)>;

Damage overwriting(std::function<std::string(const std::string&)> change) {
    return [change](const fs::path& path, const std::string& bytes) { write(path, change(bytes)); };
}

Damage replacing(std::string from, std::string to) {
    return overwriting([from, to](const std::string& bytes) { return replaced(bytes, from, to); });
}

/// Puts something else in the record's place.
Damage placing(std::function<void(const fs::path&)> place) {
    return [place](const fs::path& path, const std::string&) { place(path); };
}

std::vector<Damage> manyKindsOfDamage(std::size_t count) {
    std::vector<Damage> kinds{
        overwriting([](const std::string&) { return ""; }),
        overwriting([](const std::string& bytes) { return std::string(bytes.size(), '\0'); }),
        overwriting([](const std::string& bytes) { return bytes + bytes; }),
        overwriting([](const std::string& bytes) { return bytes + '\0'; }),
        overwriting([](const std::string& bytes) { return "\xEF\xBB\xBF" + bytes; }),
        overwriting([](const std::string& bytes) { return "[" + bytes + "]"; }),
        overwriting([](const std::string&) { return "\xFF\xFE{}"; }),
        overwriting([](const std::string&) { return std::string(100'000, '['); }),
        replacing("Ready", "Re\xC3(y"),
        replacing("Ready", "Re\ny"),
        replacing("\"Ready\"", "null"),
        replacing("\"Ready\"", "{}"),
        replacing("\"status\"", "\"state\""),
        replacing("\"createdAt\": ", "\"createdAt\": 1e300, \"x\": "),
        replacing("\"createdAt\": ", "\"createdAt\": \"2026-03-05T14:30:00Z\", \"x\": "),
        replacing("\"id\": \"", "\"id\": \"x"),
        replacing("\"turns\": [", "\"turns\": [null,"),
        replacing("\"turns\"", "\"turns\": 1, \"x\""),
        replacing("\"end\": 1.5", "\"end\": 1e10"),
        replacing("\"end\": 1.5", "\"end\": NaN"),
        replacing("\"end\": 1.5", "\"end\": true"),
        replacing("\"start\": 0", "\"beginning\": 0"),
        replacing("\"editedText\": \"\"", "\"editedText\": []"),
        replacing("{", "{\"x\": tru,"),
        replacing("{", "{\"x\": [1,2},"),
        placing([](const fs::path& path) { fs::create_directory(path); }),
        placing([](const fs::path& path) { ::mkfifo(path.c_str(), 0600); }),
        placing([](const fs::path& path) { fs::create_symlink("/dev/zero", path); }),
        placing([](const fs::path& path) { fs::create_directory_symlink("..", path); }),
        placing([](const fs::path& path) {
            write(path, "");
            fs::resize_file(path, std::uintmax_t{1} << 40);
        }),
        placing([](const fs::path& path) {
            write(path, "{}");
            fs::permissions(path, fs::perms::none); // also for one who may read all no record
        }),
    };
    const std::size_t others = kinds.size();
    for (std::size_t index = 0; kinds.size() < count; ++index) // cut off at places spread over the record
        kinds.push_back(overwriting([part = index, parts = count - others](const std::string& bytes) {
            return bytes.substr(0, (bytes.rfind('}') * part) / parts);
        }));
    return kinds;
}

/// What can be seen of a library without changing it.
std::map<fs::path, std::string> picture(const fs::path& root) {
    std::map<fs::path, std::string> seen;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        struct stat status{};
        ::lstat(entry.path().c_str(), &status);
        std::string text = std::to_string(status.st_ino) + " " + std::to_string(status.st_mode) + " " +
                           std::to_string(status.st_size) + " " + std::to_string(status.st_mtim.tv_sec) + "." +
                           std::to_string(status.st_mtim.tv_nsec) + " ";
        if (S_ISREG(status.st_mode) && status.st_size < 1'000'000 && (status.st_mode & S_IRUSR))
            text += readFile(entry.path());
        seen[entry.path()] = std::move(text);
    }
    return seen;
}

} // namespace

TEST(DamagedLibrary, EachDamagedRecordIsNamedAndLeftAloneWhileTheOthersLoad) {
    const test::TemporaryFolder folder;
    const MeetingRepository repository(folder.path());
    const std::vector<Damage> damages = manyKindsOfDamage(200);
    std::map<std::string, std::string> whole; // by folder
    std::vector<std::string> damaged;
    for (int number = 0; number < 1'000; ++number) {
        const Meeting meeting = meetingOf(number);
        const fs::path record = repository.directory(meeting.id) / "meeting.json";
        const std::string bytes = encodeMeeting(meeting);
        fs::create_directory(record.parent_path());
        if (number % 5 == 3) {
            damages[static_cast<std::size_t>(number / 5)](record, bytes);
            damaged.push_back(meeting.id.text());
        } else {
            write(record, bytes);
            whole[meeting.id.text()] = bytes;
        }
    }
    const auto before = picture(folder.path());
    const LoadedMeetings loaded = repository.loadRecovering();

    EXPECT_THAT(loaded.unreadable, testing::UnorderedElementsAreArray(damaged));
    EXPECT_EQ(loaded.meetings.size(), 800u);
    for (const Meeting& meeting : loaded.meetings)
        EXPECT_EQ(encodeMeeting(meeting), whole[meeting.id.text()]);
    EXPECT_EQ(picture(folder.path()), before);
}
