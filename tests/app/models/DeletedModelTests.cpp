#include "Varnet/models/DeletedModel.h"
#include "tests/support/StoreFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace varnet::test {

TEST(DeletedWords, SayWhenItWasDeletedAndWhenItIsErased) {
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    const QDate today(2026, 3, 12);
    const auto noon = [](QDate day) {
        return Date::fromUnix(static_cast<double>(QDateTime(day, QTime(12, 0)).toSecsSinceEpoch()));
    };
    struct Row {
        QDate deleted;
        QString when, erased;
    };
    for (const auto& [deleted, when, erased] :
         {Row{{2026, 3, 12}, "Deleted today, 12:00", "Erased in 30 days"},
          Row{{2026, 3, 11}, "Deleted yesterday, 12:00", "Erased in 29 days"},
          Row{{2026, 2, 12}, "Deleted February 12, 2026, 12:00", "Erased in 2 days"},
          Row{{2026, 2, 11}, "Deleted February 11, 2026, 12:00", "Erased tomorrow"},
          Row{{2026, 1, 1}, "Deleted January 1, 2026, 12:00", "Erased today"}}) {
        EXPECT_EQ(DeletedText::deleted(noon(deleted), today), when);
        EXPECT_EQ(DeletedText::erased(noon(deleted), today), erased);
    }
}

namespace {

/// Four meetings, deleted one after the other: the rows are "D", "C", "B", "A".
class Deleted : public StoreFixture {
protected:
    Deleted() {
        for (const char* title : {"A", "B", "C", "D"})
            ids.push_back(store().create(title).id);
        double at = 1000;
        for (const auto& id : ids)
            repository.moveToDeleted(id, {Date::now().secondsSinceReference - at--});
        openStore();
    }

    static std::string titles(const DeletedModel& model, bool onlySelected) {
        std::string text;
        for (int row = 0; row < model.count(); ++row)
            if (!onlySelected || model.data(model.index(row), DeletedModel::SelectedRole).toBool())
                text += model.data(model.index(row), DeletedModel::TitleRole).toString().toStdString();
        return text;
    }

    std::vector<Uuid> ids; ///< of A, B, C and D
};

} // namespace

TEST_F(Deleted, RowsGoAndComeOneByOneAndTheSelectionStaysInPlace) {
    DeletedModel model(store());
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QSignalSpy resets(&model, &DeletedModel::modelReset);
    EXPECT_EQ(titles(model, false), "DCBA");
    EXPECT_EQ(titles(model, true), "D");

    model.choose(1, Qt::NoModifier);
    store().restoreMeetings({ids[2]}); // the selected C
    EXPECT_EQ(titles(model, false), "DBA");
    EXPECT_EQ(titles(model, true), "B");
    store().restoreMeetings({ids[0], ids[1]});
    EXPECT_EQ(titles(model, true), "D") << "the last row that is left";
    store().deleteMeetings({ids[2]});
    EXPECT_EQ(titles(model, false), "CD");
    EXPECT_EQ(titles(model, true), "D");
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(Deleted, SeveralRowsAreSelectedByClicksAndKeys) {
    DeletedModel model(store());
    struct Step {
        const char* name;
        std::function<void()> act;
        std::string selected;
    };
    const std::vector<Step> steps{
        {"Ctrl adds", [&] { model.choose(2, Qt::ControlModifier); }, "DB"},
        {"Ctrl takes out", [&] { model.choose(0, Qt::ControlModifier); }, "B"},
        {"Shift from there", [&] { model.choose(2, Qt::ShiftModifier); }, "DCB"},
        {"Shift and a key", [&] { model.move(-1, Qt::ShiftModifier); }, "DC"},
        {"a key alone", [&] { model.move(9, Qt::NoModifier); }, "A"},
        {"all", [&] { model.selectAll(); }, "DCBA"},
    };
    for (const auto& [name, act, selected] : steps) {
        act();
        EXPECT_EQ(titles(model, true), selected) << name;
    }
    EXPECT_EQ(model.restoreText(), "Restore 4");
}

} // namespace varnet::test
