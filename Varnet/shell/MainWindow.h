#pragma once

#include "Varnet/models/AudioPlayback.h"
#include "Varnet/models/DeletedModel.h"
#include "Varnet/models/ErrorBanner.h"
#include "Varnet/models/LibraryModel.h"
#include "Varnet/models/MeetingPage.h"
#include "Varnet/models/Onboarding.h"
#include "Varnet/models/RecordingClock.h"
#include "Varnet/models/SettingsState.h"
#include "Varnet/models/SidebarState.h"
#include "Varnet/models/SoundCheck.h"
#include "Varnet/models/UndoToast.h"
#include "Varnet/models/VersionHistory.h"
#include "Varnet/models/WorkStatus.h"
#include "Varnet/shell/AppCommands.h"
#include "Varnet/shell/AppRouter.h"
#include "Varnet/shell/MeetingAppDelegate.h"

#include <QLocale>
#include <QObject>
#include <QQmlEngine>
#include <QtQml/qqmlregistration.h>

#include <memory>

class QQuickWindow;

namespace varnet {

class VarnetApp;

/// The main window and the models that it shows. Closing it hides it and leaves the program running; where nothing else
/// stands for the program on the desktop, the user is told so the first time. Main thread; the application object must
/// outlive it.
class MainWindow : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its one window")
    Q_PROPERTY(varnet::AppCommands* commands READ commands CONSTANT FINAL)
    Q_PROPERTY(varnet::AppRouter* router READ router CONSTANT FINAL)
    Q_PROPERTY(varnet::MeetingAppDelegate* delegate READ delegate CONSTANT FINAL)
    Q_PROPERTY(varnet::Onboarding* onboarding READ onboarding CONSTANT FINAL)
    Q_PROPERTY(varnet::SoundCheck* soundCheck READ soundCheck CONSTANT FINAL)
    Q_PROPERTY(varnet::LibraryModel* library READ library CONSTANT FINAL)
    Q_PROPERTY(varnet::MeetingPage* meetingPage READ meetingPage CONSTANT FINAL)
    Q_PROPERTY(varnet::AudioPlayback* playback READ playback CONSTANT FINAL)
    Q_PROPERTY(varnet::DeletedModel* deleted READ deleted CONSTANT FINAL)
    Q_PROPERTY(varnet::VersionHistory* history READ history CONSTANT FINAL)
    Q_PROPERTY(varnet::UndoToast* toast READ toast CONSTANT FINAL)
    Q_PROPERTY(varnet::SidebarState* sidebar READ sidebar CONSTANT FINAL)
    Q_PROPERTY(varnet::SettingsState* settings READ settings CONSTANT FINAL)
    Q_PROPERTY(varnet::ErrorBanner* banner READ banner CONSTANT FINAL)
    Q_PROPERTY(varnet::WorkStatus* work READ work CONSTANT FINAL)
    Q_PROPERTY(bool rightToLeft READ rightToLeft CONSTANT FINAL)
    Q_PROPERTY(bool shown READ shown NOTIFY shownChanged FINAL)
    Q_PROPERTY(bool complete READ complete NOTIFY completeChanged FINAL)
    Q_PROPERTY(bool askingToClose READ askingToClose NOTIFY askingToCloseChanged FINAL)
    Q_PROPERTY(QString closeNotice READ closeNotice NOTIFY closeNoticeChanged FINAL)

public:
    /// An engine that reads the screens on a thread of its own. That takes a while and needs nothing but the
    /// application object, so that the rest of the program can be made meanwhile.
    static std::unique_ptr<QQmlEngine> loadScreens();

    /// Waits for that, and prepares the first texts meanwhile. Now and then the reading needs the main thread, which
    /// must not wait for anything else.
    static void awaitScreens(QQmlEngine& engine);

    explicit MainWindow(VarnetApp& app, std::unique_ptr<QQmlEngine> screens = {}, QObject* parent = nullptr);
    ~MainWindow() override;

    /// Shows the window at its last place and size: first the meetings, with the next frame all that stands around
    /// them, and what is not seen at first after that. False when the screens could not be loaded; the log says why.
    bool open();

    /// Brings the window up and forward. `token` is the leave to come to the front (xdg-activation token or startup
    /// id) of who asked for it; empty where there is none.
    void show(const QString& token = {});

    /// The program has an item in the tray, which the notice about going on in the background names.
    void setInTray(bool inTray);

    QQuickWindow* window() const { return m_window.get(); }
    const RecordingClock& clock() const { return m_clock; }

    AppCommands* commands() const;
    AppRouter* router() const;
    MeetingAppDelegate* delegate() const;
    Onboarding* onboarding() const;
    SoundCheck* soundCheck() { return &m_soundCheck; }
    LibraryModel* library() { return &m_library; }
    MeetingPage* meetingPage() { return &m_meetingPage; }
    AudioPlayback* playback() { return &m_playback; }
    DeletedModel* deleted() { return &m_deleted; }
    VersionHistory* history() { return &m_history; }
    UndoToast* toast() { return &m_toast; }
    SidebarState* sidebar() { return &m_sidebar; }
    SettingsState* settings() { return &m_settings; }
    ErrorBanner* banner() { return &m_banner; }
    WorkStatus* work() { return &m_work; }

    bool rightToLeft() const { return QLocale().textDirection() == Qt::RightToLeft; } ///< how the locale is read
    /// The first frame, with the meetings, is up: what stands around them is made.
    bool shown() const { return m_shown; }
    /// That is up, too: what is not seen at first can be made.
    bool complete() const { return m_complete; }
    bool askingToClose() const { return m_askingToClose; } ///< the notice about going on in the background is up
    QString closeNotice() const;
    Q_INVOKABLE void close();         ///< the notice has been read: the window goes
    Q_INVOKABLE void cancelClosing(); ///< it stays

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void shownChanged();
    void completeChanged();
    void askingToCloseChanged();
    void closeNoticeChanged();

private:
    void tellUnheard();
    void afterNextFrame(const char* moment, void (MainWindow::*next)());
    void announceShown();
    void announceComplete();
    void followHistory();
    void followOnboarding();
    void restoreGeometry();
    void keepGeometry();
    void setAskingToClose(bool asking);

    VarnetApp& m_app;
    RecordingClock m_clock;
    SoundCheck m_soundCheck;
    LibraryModel m_library;
    MeetingPage m_meetingPage;
    AudioPlayback m_playback;
    DeletedModel m_deleted;
    VersionHistory m_history;
    UndoToast m_toast;
    SidebarState m_sidebar;
    SettingsState m_settings;
    ErrorBanner m_banner;
    WorkStatus m_work;
    bool m_shown = false;
    bool m_complete = false;
    bool m_unheard = false; ///< the store's error came while the window was closed
    bool m_askingToClose = false;
    bool m_inTray = false;
    std::unique_ptr<QQmlEngine> m_engine; ///< behind what its objects look at
    std::unique_ptr<QQuickWindow> m_window;
};

} // namespace varnet
