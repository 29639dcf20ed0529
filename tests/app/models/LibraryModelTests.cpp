#include "MeetingCore/audio/DurableWAV.h"
#include "Varnet/models/LibraryModel.h"
#include "Varnet/models/Theme.h"
#include "tests/support/Await.h"
#include "tests/support/StoreFixture.h"

#include <QAbstractItemModelTester>
#include <QDateTime>

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

class Library : public StoreFixture {
protected:
    /// Stores a meeting that began at noon, so many days ago.
    Meeting stored(const std::string& title, int daysAgo, double minutesBack = 0) {
        auto meeting = Meeting::make(title);
        const auto noon = QDateTime(QDate::currentDate().addDays(-daysAgo), QTime(12, 0));
        meeting.createdAt = Date::fromUnix(noon.toMSecsSinceEpoch() / 1000.0 - minutesBack * 60);
        repository.save(meeting);
        return meeting;
    }

    static QString text(const LibraryModel& model, int row, LibraryModel::Role role) {
        return model.data(model.index(row), role).toString();
    }
};

} // namespace

TEST_F(Library, RowsAreNewestFirstUnderOneHeadingADay) {
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    stored("Planning", 0);
    stored("Retrospective", 0, 30);
    stored("Interview", 1);
    openStore();
    LibraryModel model(store());
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);

    ASSERT_EQ(model.rowCount(), 3);
    struct Row {
        QString title, subtitle, badge, time;
        bool startsDay;
    };
    const std::vector<Row> expected{{"Planning", "No transcript yet", "Empty", "12:00", true},
                                    {"Retrospective", "No transcript yet", "Empty", "11:30", false},
                                    {"Interview", "No transcript yet", "Empty", "12:00", true}};
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(text(model, row, LibraryModel::TitleRole), expected[row].title);
        EXPECT_EQ(text(model, row, LibraryModel::SubtitleRole), expected[row].subtitle);
        EXPECT_EQ(text(model, row, LibraryModel::BadgeTextRole), expected[row].badge);
        EXPECT_EQ(text(model, row, LibraryModel::TimeRole), expected[row].time);
        EXPECT_EQ(text(model, row, LibraryModel::DurationRole), "");
        EXPECT_EQ(model.data(model.index(row), LibraryModel::StartsDayRole).toBool(), expected[row].startsDay);
    }
    EXPECT_EQ(text(model, 0, LibraryModel::DayRole), "Today");
    EXPECT_EQ(text(model, 2, LibraryModel::DayRole), "Yesterday");
}

TEST_F(Library, TheDurationIsThatOfTheAudioElseOfTheTranscript) {
    auto withAudio = stored("With audio", 0);
    withAudio.audioFilename = "meeting.wav";
    withAudio.turns = {{Uuid::random(), 0, 5, "Speaker 1", "Hello", {}}};
    repository.save(withAudio);
    std::filesystem::path audio = repository.directory(withAudio.id) / "meeting.wav";
    DurableWAV(audio).append(std::vector<std::byte>(32'000 * 75));
    auto withTurns = stored("With turns", 1);
    withTurns.turns = {{Uuid::random(), 0, 61, "Speaker 1", "Hello", {}}};
    repository.save(withTurns);
    openStore();
    const LibraryModel model(store());

    EXPECT_EQ(text(model, 0, LibraryModel::DurationRole), "1:15");
    EXPECT_EQ(text(model, 1, LibraryModel::DurationRole), "1:01");
}

TEST_F(Library, ARecordingEntersAtTheTopAndItsBadgeFollowsIt) {
    stored("Planning", 0);
    openStore();
    LibraryModel model(store());
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    int changes = 0;
    QObject::connect(&model, &LibraryModel::dataChanged, &model, [&] { ++changes; });

    await(store().startRecording());
    ASSERT_EQ(model.count(), 2);
    EXPECT_EQ(model.currentRow(), 0);
    EXPECT_EQ(text(model, 0, LibraryModel::BadgeTextRole), "Recording");
    EXPECT_EQ(text(model, 0, LibraryModel::DayRole), "Today");
    EXPECT_EQ(text(model, 1, LibraryModel::TitleRole), "Planning");
    EXPECT_FALSE(model.data(model.index(1), LibraryModel::StartsDayRole).toBool());

    changes = 0;
    await(store().stopRecording());
    EXPECT_GT(changes, 0);
    EXPECT_NE(text(model, 0, LibraryModel::BadgeTextRole), "Recording");
}

TEST_F(Library, TheSelectionFollowsKeysAndClicks) {
    std::map<Uuid, char> names;
    for (int i = 0; i < 5; ++i)
        names[stored("Meeting", i).id] = static_cast<char>('a' + i);
    openStore();
    LibraryModel model(store());
    const auto selected = [&] {
        std::string letters;
        for (const auto& id : store().librarySelection())
            letters += names[id];
        std::ranges::sort(letters);
        return letters;
    };
    constexpr int none = 0, shift = Qt::ShiftModifier, control = Qt::ControlModifier;
    struct Step {
        const char* name;
        std::function<void()> act;
        std::string selection;
        int current;
    };
    const std::vector<Step> steps{
        {"up at the top", [&] { model.moveBy(-1); }, "a", 0},
        {"down", [&] { model.moveBy(1); }, "b", 1},
        {"extended down", [&] { model.moveBy(2, shift); }, "bcd", 3},
        {"and back beyond its start", [&] { model.moveBy(-3, shift); }, "ab", 0},
        {"page down", [&] { model.moveBy(10); }, "e", 4},
        {"the keyboard alone moves", [&] { model.moveBy(-2, control); }, "e", 2},
        {"taken in", [&] { model.clickRow(2, control); }, "ce", 2},
        {"taken out", [&] { model.clickRow(4, control); }, "c", 4},
        {"up to a click", [&] { model.clickRow(2, shift); }, "cde", 2},
        {"a menu on a selected row", [&] { model.selectForMenu(3); }, "cde", 2},
        {"a menu on another", [&] { model.selectForMenu(0); }, "a", 0},
        {"all", [&] { model.selectAll(); }, "abcde", 0},
        {"a click", [&] { EXPECT_TRUE(model.clickRow(3, none)); }, "d", 3},
        {"a row that does not exist", [&] { EXPECT_FALSE(model.clickRow(5, none)); }, "d", 3},
        {"a new meeting", [&] { names[store().create("New").id] = 'f'; }, "f", 0},
        {"extended from it", [&] { model.moveBy(1, shift); }, "af", 1},
    };
    for (const auto& [name, act, selection, current] : steps) {
        act();
        EXPECT_EQ(selected(), selection) << name;
        EXPECT_EQ(model.currentRow(), current) << name;
    }
}

TEST_F(Library, AQueryLeavesTheRowsThatHaveItsWords) {
    auto today = stored("Planning", 0), alsoToday = stored("Review", 0, 30), yesterday = stored("Interview <1>", 1);
    today.turns = {{Uuid::random(), 0, 5, "Speaker 1", "Let us review & ship", {}}};
    repository.save(today);
    openStore();
    LibraryModel model(store());
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    struct Row {
        const char* query;
        std::vector<QString> titles;
        QString summary;
    };
    for (const auto& [query, titles, summary] :
         {Row{"REVIEW", {"Planning", "Review"}, "2 matches"},
          Row{"view", {"Planning", "Review", "Interview <1>"}, "3 matches"}, Row{"<1>", {"Interview <1>"}, "1 match"},
          Row{"nobody", {}, ""}, Row{"", {"Planning", "Review", "Interview <1>"}, ""}}) {
        model.setQuery(query);
        std::vector<QString> found;
        for (int row = 0; row < model.count(); ++row)
            found.push_back(text(model, row, LibraryModel::TitleRole));
        EXPECT_EQ(found, titles) << query;
        EXPECT_EQ(model.summary(), summary) << query;
        EXPECT_EQ(model.noResults(), titles.empty()) << query;
    }

    Theme::shared().setAppearance(Theme::Appearance::light);
    model.setQuery("view");
    EXPECT_EQ(text(model, 0, LibraryModel::SnippetRole),
              "Let us re<b><font color=\"#2a5bc7\">view</font></b> &amp; ship");
    EXPECT_EQ(text(model, 1, LibraryModel::SnippetRole), "") << "only the title has it";

    model.setQuery("interview");
    EXPECT_EQ(text(model, 0, LibraryModel::DayRole), "Yesterday");
    EXPECT_TRUE(store().librarySelection().empty()) << "what was selected is hidden";
    store().setTitle("An interview", today.id);
    EXPECT_EQ(model.count(), 2);
    EXPECT_EQ(text(model, 0, LibraryModel::DayRole), "Today");
    store().setTitle("Something else", yesterday.id);
    EXPECT_EQ(model.count(), 1);
    model.setQuery("");
    EXPECT_EQ(store().librarySelection(), std::set{today.id}) << "the meeting on display is selected again";
}

TEST_F(Library, DeletedAndRestoredMeetingsLeaveTheOtherRowsInPlace) {
    std::vector<Uuid> ids;
    for (int i = 0; i < 5; ++i)
        ids.push_back(stored("Meeting", i).id);
    openStore();
    LibraryModel model(store());
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::string changes;
    QObject::connect(&model, &LibraryModel::modelReset, &model, [&] { changes += "reset "; });
    QObject::connect(&model, &LibraryModel::rowsRemoved, &model, [&](const QModelIndex&, int first, int last) {
        changes += '-' + std::to_string(first) + ".." + std::to_string(last) + ' ';
    });
    QObject::connect(&model, &LibraryModel::rowsInserted, &model, [&](const QModelIndex&, int first, int last) {
        changes += '+' + std::to_string(first) + ".." + std::to_string(last) + ' ';
    });
    store().deleteMeetings({ids[1], ids[3], ids[4]}, nullptr);
    EXPECT_EQ(model.count(), 2);
    store().restoreMeetings({ids[1], ids[3], ids[4]}, nullptr);
    EXPECT_EQ(changes, "-3..4 -1..1 +1..1 +3..4 ");
}

TEST_F(Library, ATitleIsRenamedInItsRow) {
    const auto meeting = stored("Planing", 0);
    openStore();
    LibraryModel model(store());
    const auto renaming = [&] { return model.data(model.index(0), LibraryModel::RenamingRole).toBool(); };
    model.beginRename();
    EXPECT_TRUE(renaming());
    model.endRename();
    model.rename("too late");
    EXPECT_EQ(onDisk(meeting.id).title, "Planing");
    model.beginRename();
    model.rename("Planning");
    EXPECT_FALSE(renaming());
    EXPECT_EQ(onDisk(meeting.id).title, "Planning");
}

} // namespace varnet::test
