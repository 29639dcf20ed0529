#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "Varnet/capture/CaptureLevels.h"
#include "Varnet/models/Theme.h"
#include "Varnet/shell/MainWindow.h"
#include "Varnet/shell/VarnetApp.h"
#include "tests/support/Await.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <QAccessible>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

QStringList warnings;

/// The real window over a library of its own, without engines.
class Window : public ::testing::Test {
public:
    Window() {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        warnings.clear();
        m_former =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) { warnings << text; });
        const MeetingRepository repository(folder / "meetings");
        for (const char* title : {"Planning", "Retrospective"}) {
            auto meeting = Meeting::make(title);
            meeting.turns = {{Uuid::random(), 0, 1, "Speaker 1", "Hello", {}}};
            repository.save(meeting);
        }
        Settings().setFlag("OnboardingDone", true);
        app = std::make_unique<VarnetApp>(CommandLine{.storageRoot = folder / "meetings"});
        frame = std::make_unique<MainWindow>(*app);
    }
    ~Window() override {
        EXPECT_EQ(warnings.join('\n').toStdString(), "");
        frame.reset();
        app.reset();
        qInstallMessageHandler(m_former);
    }

protected:
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(frame->window(), key, modifiers);
        settle();
    }

    void type(const char* text) {
        for (const char* letter = text; *letter; ++letter)
            QTest::keyClick(frame->window(), *letter);
        settle();
    }

    void open(AppRouter::Page page) {
        ASSERT_TRUE(frame->open() && QTest::qWaitForWindowExposed(frame->window()));
        frame->window()->requestActivate();
        app->router().setPage(page);
        settle();
    }

    /// Ten seconds of silence with turns at 0 and 3 s, and a draft that quotes the second.
    void openMeetingWithAudio() {
        auto meeting = Meeting::make("With audio");
        meeting.source = MeetingSource();
        meeting.turns = {{Uuid::random(), 0, 3, "Speaker 1", "Hello", {}},
                         {Uuid::random(), 3, 6, "Speaker 2", "Oh, hello", {}}};
        auto& draft = meeting.generatedNotes.emplace();
        draft.sources = {{"S1", meeting.turns[1].id, 3, 6, "Mara", "Oh, hello"}};
        draft.items = {{NoteItem::Kind::summary, "They greet each other", {}, {}, {{"S1", "hello"}}}};
        meeting.audioFilename = "imported.wav";
        const auto directory = MeetingRepository(folder / "meetings").directory(meeting.id);
        std::filesystem::create_directories(directory);
        DurableWAV audio(directory / "imported.wav");
        audio.append(std::vector<std::byte>(320'000));
        audio.close();
        ASSERT_TRUE(app->store().saveImported(meeting));
        open(AppRouter::Page::meeting);
    }

    void click(QQuickItem* item) {
        QTest::mouseClick(frame->window(), Qt::LeftButton, {}, item->mapToScene({5, 5}).toPoint());
        settle();
    }

    /// The control on display that has this name for screen readers.
    QQuickItem* control(const QString& name);

    const TranscriptTurn& turn() const { return app->store().selected()->turns.front(); }

    TemporaryFolder folder;
    ScopedVariable home{"XDG_CONFIG_HOME", (folder / "config").string()};
    ScopedVariable cache{"XDG_CACHE_HOME", (folder / "cache").string()};
    ScopedVariable engines{"VARNET_NO_ENGINES", "1"};
    std::unique_ptr<VarnetApp> app;
    std::unique_ptr<MainWindow> frame;

private:
    QtMessageHandler m_former = nullptr;
};

/// Every item below that is drawn and takes the keyboard's focus or is a control.
void collectControls(QQuickItem* item, QList<QQuickItem*>& controls) {
    if (!item->isVisible())
        return;
    if (item->activeFocusOnTab() || item->inherits("QQuickAbstractButton") || item->inherits("QQuickProgressBar") ||
        QString(item->metaObject()->className()).startsWith("TurnClock"))
        controls << item;
    for (auto* child : item->childItems())
        collectControls(child, controls);
}

QQuickItem* Window::control(const QString& name) {
    QList<QQuickItem*> controls;
    collectControls(frame->window()->contentItem(), controls);
    for (auto* control : controls)
        if (auto* accessible = QAccessible::queryAccessibleInterface(control))
            if (accessible->text(QAccessible::Name) == name)
                return control;
    throw std::runtime_error("No control is named " + name.toStdString());
}

} // namespace

TEST_F(Window, TheMeetingsDoNotWaitForTheModuleOfTheControls) {
    const auto read = [] {
        QFile libraries(QStringLiteral("/proc/self/maps"));
        return libraries.open(QFile::ReadOnly) && libraries.readAll().contains("qtquicktemplates2plugin");
    };
    ASSERT_TRUE(frame->open());
    EXPECT_FALSE(read()) << "nothing that is on the first frame may name it: it takes a third of the start";
    ASSERT_TRUE(QTest::qWaitFor([&] { return frame->complete(); }));
    EXPECT_TRUE(read());
}

TEST_F(Window, WhatQtDrawsByItselfHasTheColoursOfTheTheme) {
    open(AppRouter::Page::library);
    const auto ground = [&] {
        return frame->window()->property("palette").value<QObject*>()->property("toolTipBase").value<QColor>();
    };
    auto& theme = Theme::shared();
    for (const auto appearance : {Theme::Appearance::dark, Theme::Appearance::light}) {
        theme.setAppearance(appearance);
        EXPECT_TRUE(eventually([&] { return ground() == theme.raised(); })) << theme.dark();
    }
    theme.setAppearance({});
}

TEST_F(Window, ADeleteIsUndoneByTheKeyboardAndErasingIsAskedFirst) {
    open(AppRouter::Page::library);
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    ASSERT_EQ(app->store().meetings().size(), 1);
    press(Qt::Key_Return);
    EXPECT_TRUE(app->router().showingMeeting());
    control("Title")->forceActiveFocus();
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(app->store().meetings().size(), 1) << "undoing in a field is the field's";
    press(Qt::Key_2, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(app->store().meetings().size(), 2);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_EQ(app->store().deletedMeetings().size(), 1);
    press(Qt::Key_Delete);
    press(Qt::Key_Return); // on the answer that keeps it
    EXPECT_EQ(app->store().deletedMeetings().size(), 1);
    press(Qt::Key_Return);
    EXPECT_EQ(app->store().meetings().size(), 2);
}

TEST_F(Window, WhatIsBeingTypedIsStoredAndStaysWithItsMeeting) {
    open(AppRouter::Page::meeting);
    auto& store = app->store();
    const auto first = store.meetings()[0].id, second = store.meetings()[1].id;
    const auto other = store.meeting(second)->title;
    control("Title")->forceActiveFocus();
    press(Qt::Key_A, Qt::ControlModifier);
    type("Roadmap");
    store.setSelectedID(second);
    EXPECT_EQ(store.meeting(first)->title, "Roadmap");
    EXPECT_EQ(store.meeting(second)->title, other);
    EXPECT_EQ(control("Title")->property("text").toString().toStdString(), other);

    store.setSelectedID(first);
    press(Qt::Key_Tab, Qt::ControlModifier);
    auto* notes = control("Your notes");
    type("ab");
    press(Qt::Key_Left);
    ASSERT_TRUE(eventually([&] { return store.selected()->notes == "ab"; }));
    EXPECT_EQ(notes->property("cursorPosition"), 1) << "what was typed comes back without moving the cursor";
    notes->setProperty("text", QStringLiteral("no\u00A0break"));
    store.setSelectedID(second);
    EXPECT_EQ(store.meeting(first)->notes, "no\u00A0break");
    EXPECT_EQ(notes->property("text"), "");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(notes->property("text"), "") << "nothing of the other meeting can be brought here";
    notes->setProperty("text", "last words");
    app->delegate().closing();
    EXPECT_EQ(store.meeting(second)->notes, "last words");
}

TEST_F(Window, ATurnIsCorrectedByTheKeyboard) {
    open(AppRouter::Page::meeting);
    press(Qt::Key_Return);
    type(" all ");
    press(Qt::Key_Return);
    EXPECT_EQ(turn().editedText, "Hello all ");
    press(Qt::Key_Return);
    type("!");
    press(Qt::Key_Escape);
    EXPECT_EQ(turn().editedText, "Hello all ");
    press(Qt::Key_F2);
    type("Mara");
    press(Qt::Key_Return);
    EXPECT_EQ(app->store().selected()->speakerName("Speaker 1"), "Mara");

    press(Qt::Key_Return);
    type("Hi");
    app->commands().openHistory();
    EXPECT_EQ(turn().editedText, "Hello all Hi") << "handed in before anything looks at the meeting";
}

TEST_F(Window, TheRecordingIsPlayedByClocksAndKeysThatTypingKeeps) {
    openMeetingWithAudio();
    auto* playback = frame->playback();
    ASSERT_TRUE(playback->present());
    press(Qt::Key_Right);
    EXPECT_EQ(playback->position(), 5);
    const QSignalSpy playing(playback, &AudioPlayback::playingChanged);
    press(Qt::Key_Tab, Qt::ControlModifier);
    type("a b");
    press(Qt::Key_Right);
    EXPECT_EQ(playback->position(), 5);
    EXPECT_EQ(playing.count(), 0) << "the keys belong to the notes";
    press(Qt::Key_Tab, Qt::ControlModifier);

    click(control("Play from 00:03"));
    EXPECT_GE(playing.count(), 1);
    EXPECT_EQ(playback->playingTurn(), 1);
    // Without a sound server it ends by itself.
    ASSERT_TRUE(eventually([&] { return !playback->playing() || playback->position() > 3.2; }));
    playback->pause();
    playback->play();
    EXPECT_TRUE(playback->playing());
    frame->window()->hide();
    EXPECT_FALSE(playback->playing()) << "nothing plays from a closed window";
}

TEST_F(Window, AQuoteLeadsToItsTurnAndBackByTheKeyboard) {
    openMeetingWithAudio();
    press(Qt::Key_Tab, Qt::ControlModifier);
    control("They greet each other")->forceActiveFocus();
    press(Qt::Key_Down);
    const auto focused = [&] { return QAccessible::queryAccessibleInterface(frame->window()->activeFocusItem()); };
    EXPECT_EQ(focused()->role(), QAccessible::Button);
    press(Qt::Key_Return);
    EXPECT_EQ(focused()->text(QAccessible::Name), "Speaker 2, 00:03: Oh, hello");
    press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(focused()->text(QAccessible::Name), "Quote, Mara, 00:03: “hello”") << "the place in the draft is kept";
}

TEST_F(Window, NewTurnsAreFollowedUntilTheKeyboardReadsBack) {
    auto meeting = Meeting::make("Live");
    for (int turn = 0; turn < 40; ++turn)
        meeting.turns.push_back({Uuid::random(), turn * 1.0, turn + 1.0, "Speaker 1", "Hello", {}});
    ASSERT_TRUE(app->store().saveImported(meeting));
    app->store().levels().preview(0.1f, 0.1f, false);
    open(AppRouter::Page::meeting);
    const auto focused = [&] {
        return QAccessible::queryAccessibleInterface(frame->window()->activeFocusItem())->text(QAccessible::Name);
    };
    EXPECT_EQ(focused(), "Speaker 1, 00:39: Hello");
    press(Qt::Key_Up);
    EXPECT_THROW(control("Jump to live"), std::runtime_error) << "the newest turn is still in view";
    press(Qt::Key_Home);
    EXPECT_NO_THROW(control("Jump to live"));
    press(Qt::Key_End);
    EXPECT_EQ(focused(), "Speaker 1, 00:39: Hello");
    EXPECT_THROW(control("Jump to live"), std::runtime_error);
}

TEST_F(Window, SettingsAreChosenByTheKeyboardAndGiveTheFocusBack) {
    open(AppRouter::Page::library);
    const auto* before = frame->window()->activeFocusItem();
    const auto focused = [&] { return QAccessible::queryAccessibleInterface(frame->window()->activeFocusItem()); };
    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(eventually([&] { return focused() && focused()->text(QAccessible::Name) == "General"; }));
    press(Qt::Key_Right);
    EXPECT_EQ(focused()->role(), QAccessible::PageTab);
    EXPECT_TRUE(focused()->state().selected);
    for (int tab = 0; tab < 6 && focused()->role() != QAccessible::ComboBox; ++tab)
        press(Qt::Key_Tab);
    EXPECT_EQ(focused()->text(QAccessible::Name), "Record");
    press(Qt::Key_Down);
    EXPECT_EQ(app->store().captureMode(), CaptureMode::microphone);
    EXPECT_TRUE(focused()->text(QAccessible::Description).contains("Microphone only"));
    press(Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(focused()->text(QAccessible::Name), "Storage") << "round the end";
    press(Qt::Key_Escape);
    EXPECT_FALSE(app->router().settingsOpen());
    EXPECT_EQ(frame->window()->activeFocusItem(), before);

    app->store().setSelectedID(app->store().meetings().front().id);
    app->router().setPage(AppRouter::Page::meeting);
    press(Qt::Key_Comma, Qt::ControlModifier);
    press(Qt::Key_Escape);
    EXPECT_FALSE(app->router().settingsOpen());
    EXPECT_TRUE(app->router().showingMeeting()) << "the keys are the dialog's, not also the page's";
}

TEST_F(Window, ATitleThatIsCutOffIsShownWholeUnderThePointer) {
    const std::string title(400, 'w');
    auto meeting = Meeting::make(title);
    meeting.source = MeetingSource();
    ASSERT_TRUE(app->store().saveImported(meeting));
    open(AppRouter::Page::library);
    const auto shown = [&](bool whole) {
        QQuickItem* found = nullptr;
        const auto find = [&](const auto& self, QQuickItem* item) -> void {
            if (item->isVisible() && item->property("text").toString().toStdString() == title &&
                item->property("truncated").isValid() && item->property("truncated").toBool() != whole)
                found = item;
            for (auto* child : item->childItems())
                self(self, child);
        };
        find(find, frame->window()->contentItem());
        return found;
    };
    ASSERT_TRUE(eventually([&] { return shown(false) != nullptr; }));
    EXPECT_FALSE(shown(true));
    QTest::mouseMove(frame->window(), shown(false)->mapToScene({20, 8}).toPoint());
    EXPECT_TRUE(eventually([&] { return shown(true) != nullptr; }));
    QTest::mouseMove(frame->window(), QPoint(4, 4));
    EXPECT_TRUE(eventually([&] { return !shown(true); }));
}

TEST_F(Window, TheMainMenuIsWorkedByTheKeyboard) {
    open(AppRouter::Page::library);
    const auto choose = [this](int below) {
        press(Qt::Key_F10);
        for (int row = 0; row < below; ++row)
            press(Qt::Key_Down);
        press(Qt::Key_Return);
    };
    choose(4); // of the rows that can be chosen: there is nothing to undo or to redo
    EXPECT_TRUE(app->router().showingDeleted());
    press(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(app->router().exporting()) << "the meeting's page is not up";
    choose(2);
    EXPECT_TRUE(app->router().showingLibrary());
    type("retro");
    EXPECT_EQ(frame->library()->query(), "retro");
    choose(6);
    EXPECT_TRUE(app->router().settingsOpen());
}

} // namespace varnet::test
