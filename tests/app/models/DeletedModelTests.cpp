#include "Varnet/models/DeletedModel.h"
#include "tests/support/StoreFixture.h"

#include <QAbstractItemModelTester>

namespace varnet::test {
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

    static std::string selected(const DeletedModel& model) {
        std::string text;
        for (int row = 0; row < model.count(); ++row)
            if (model.data(model.index(row), DeletedModel::SelectedRole).toBool())
                text += model.data(model.index(row), DeletedModel::TitleRole).toString().toStdString();
        return text;
    }

    std::vector<Uuid> ids; ///< of A, B, C and D
};

} // namespace

TEST_F(Deleted, SeveralRowsAreSelectedByClicksAndKeysAndOneThatGoesHandsItOn) {
    DeletedModel model(store());
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    struct Step {
        const char* name;
        std::function<void()> act;
        std::string expected;
    };
    const std::vector<Step> steps{
        {"Ctrl adds", [&] { model.choose(2, Qt::ControlModifier); }, "DB"},
        {"Ctrl takes out", [&] { model.choose(0, Qt::ControlModifier); }, "B"},
        {"Shift from there", [&] { model.choose(2, Qt::ShiftModifier); }, "DCB"},
        {"Shift and a key", [&] { model.move(-1, Qt::ShiftModifier); }, "DC"},
        {"a key alone", [&] { model.move(9, Qt::NoModifier); }, "A"},
        {"restored", [&] { store().restoreMeetings({ids[0]}); }, "B"},
        {"deleted again", [&] { store().deleteMeetings({ids[0]}); }, "B"},
        {"all", [&] { model.selectAll(); }, "ADCB"},
    };
    for (const auto& [name, act, expected] : steps) {
        act();
        EXPECT_EQ(selected(model), expected) << name;
    }
    EXPECT_EQ(model.restoreText(), "Restore 4");
}

} // namespace varnet::test
