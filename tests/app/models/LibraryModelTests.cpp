#include "Varnet/models/LibraryModel.h"
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
    ASSERT_TRUE(QFile(QString::fromStdString(audio)).open(QIODevice::WriteOnly));
    std::filesystem::resize_file(audio, 44 + 32'000 * 75);
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
    EXPECT_EQ(model.selectedRow(), 0);
    EXPECT_EQ(text(model, 0, LibraryModel::BadgeTextRole), "Recording");
    EXPECT_EQ(text(model, 0, LibraryModel::DayRole), "Today");
    EXPECT_EQ(text(model, 1, LibraryModel::TitleRole), "Planning");
    EXPECT_FALSE(model.data(model.index(1), LibraryModel::StartsDayRole).toBool());

    changes = 0;
    await(store().stopRecording());
    EXPECT_GT(changes, 0);
    EXPECT_NE(text(model, 0, LibraryModel::BadgeTextRole), "Recording");
}

TEST_F(Library, TheSelectionMovesWithinTheRows) {
    const auto first = stored("First", 0), second = stored("Second", 1), third = stored("Third", 2);
    openStore();
    LibraryModel model(store());
    struct Step {
        int rows;
        Uuid selected;
    };
    for (const auto& [rows, selected] :
         {Step{-1, first.id}, Step{1, second.id}, Step{10, third.id}, Step{-1, second.id}, Step{-9, first.id}}) {
        model.moveSelection(rows);
        EXPECT_EQ(store().selectedID(), selected) << "after " << rows;
    }
    model.select(3);
    EXPECT_EQ(store().selectedID(), first.id) << "a row that does not exist";
}

} // namespace varnet::test
