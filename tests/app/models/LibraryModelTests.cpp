#include "Varnet/models/LibraryModel.h"
#include "Varnet/models/Theme.h"
#include "tests/support/StoreFixture.h"

#include <QAbstractItemModelTester>

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
    constexpr int shift = Qt::ShiftModifier, control = Qt::ControlModifier;
    struct Step {
        const char* name;
        std::function<void()> act;
        std::string selection;
        int current;
    };
    const std::vector<Step> steps{
        {"down", [&] { model.moveBy(1); }, "b", 1},
        {"extended up", [&] { model.moveBy(-3, shift); }, "ab", 0},
        {"page down", [&] { model.moveBy(10); }, "e", 4},
        {"the keyboard alone moves", [&] { model.moveBy(-2, control); }, "e", 2},
        {"taken in", [&] { model.clickRow(2, control); }, "ce", 2},
        {"taken out", [&] { model.clickRow(4, control); }, "c", 4},
        {"up to a click", [&] { model.clickRow(2, shift); }, "cde", 2},
        {"a menu on a selected row", [&] { model.selectForMenu(3); }, "cde", 2},
        {"a menu on another", [&] { model.selectForMenu(0); }, "a", 0},
        {"all", [&] { model.selectAll(); }, "abcde", 0},
        {"a click", [&] { EXPECT_TRUE(model.clickRow(3, 0)); }, "d", 3},
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
    auto today = stored("Planning", 0);
    stored("Review", 0, 30);
    stored("Interview", 1);
    today.turns = {{Uuid::random(), 0, 5, "Speaker 1", "Let us review & ship", {}}};
    repository.save(today);
    openStore();
    LibraryModel model(store());
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    Theme::shared().setAppearance(Theme::Appearance::light);
    model.setQuery("view");
    EXPECT_EQ(text(model, 0, LibraryModel::SnippetRole),
              "Let us re<b><font color=\"#2a5bc7\">view</font></b> &amp; ship");
    EXPECT_EQ(text(model, 1, LibraryModel::TitleRole), "Review");
    EXPECT_EQ(text(model, 1, LibraryModel::SnippetRole), "") << "only the title has it";

    model.setQuery("interview");
    EXPECT_EQ(text(model, 0, LibraryModel::DayRole), "Yesterday");
    EXPECT_TRUE(store().librarySelection().empty()) << "what was selected is hidden";
    store().setTitle("An interview", today.id);
    EXPECT_EQ(model.count(), 2);
    model.setQuery("");
    EXPECT_EQ(store().librarySelection(), std::set{today.id}) << "the meeting on display is selected again";
}

} // namespace varnet::test
