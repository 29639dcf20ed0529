#include "Varnet/async/Worker.h"
#include "Varnet/shell/Translations.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

namespace {

/// Lets what a test has called off come to its end: stopped coroutines resume, and objects to be deleted later are.
class EventsAfterEachTest final : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo&) override {
        varnet::finishBackgroundWork();
        for (int round = 0; round < 10; ++round) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
};

} // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // A list needs no screen: the first one of a machine reads every font, and CTest waits for the list.
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    varnet::installTranslations();
    testing::UnitTest::GetInstance()->listeners().Append(new EventsAfterEachTest);
    return RUN_ALL_TESTS();
}
