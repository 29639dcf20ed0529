#include "Varnet/shell/MainWindow.h"

#include "Varnet/models/Theme.h"
#include "Varnet/platform/WindowActivation.h"
#include "Varnet/shell/SymbolImages.h"
#include "Varnet/shell/VarnetApp.h"

#include <QAccessible>
#include <QEvent>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QScreen>
#include <QTimer>

#include <chrono>
#include <ctime>
#include <utility>

void qml_register_types_Varnet();

namespace varnet {

namespace {

/// Off unless asked for: QT_LOGGING_RULES=varnet.start.info=true tells how long a start takes.
Q_LOGGING_CATEGORY(startLog, "varnet.start", QtWarningMsg)

void logStart(const char* moment) {
    qCInfo(startLog, "%s after %.1f ms of processor time", moment,
           1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC);
}

constexpr QSize usualSize{1280, 820};
constexpr QSize leastSize{900, 600};
constexpr std::chrono::seconds longestWaitForFrame{3}; // a window that nobody sees yet may get none
constexpr auto closeNoticeKey = "CloseNoticeShown";

QUrl screen(const char* file) {
    return QUrl(QStringLiteral("qrc:/qt/qml/Varnet/screens/") + QLatin1String(file));
}

/// The module's types are registered by a static object that only a mention brings into the program.
void registerScreens() {
    [[maybe_unused]] auto* volatile registration = &qml_register_types_Varnet;
}

} // namespace

std::unique_ptr<QQmlEngine> MainWindow::loadScreens() {
    registerScreens();
    if (QQuickStyle::name().isEmpty())
        QQuickStyle::setStyle(QStringLiteral("Basic"));
    auto engine = std::make_unique<QQmlEngine>();
    engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine->addImageProvider(QStringLiteral("symbols"), new SymbolImages);
    new QQmlComponent(engine.get(), screen("Screens.qml"), QQmlComponent::Asynchronous, engine.get());
    Theme::shared(); // asks for the desktop's preferences, which come while the screens are being read
    return engine;
}

void MainWindow::awaitScreens(QQmlEngine& engine) {
    auto& theme = Theme::shared();
    theme.takePreferences();
    for (const auto style : {&Theme::body, &Theme::emphasis, &Theme::caption, &Theme::title}) {
        QFontMetricsF((theme.*style)().font)
            .horizontalAdvance(QGuiApplication::applicationDisplayName()); // opens the font
        QCoreApplication::sendPostedEvents();                              // what the reading asks for
    }
    QAccessible::isActive(); // asks for screen readers
    const QQmlComponent read(&engine, screen("Screens.qml"));
}

MainWindow::MainWindow(VarnetApp& app, std::unique_ptr<QQmlEngine> screens, QObject* parent)
    : QObject(parent),
      m_app(app),
      m_clock(app.store()),
      m_library(app.store()),
      m_meetingPage(app.store(), m_clock),
      m_playback(app.store()),
      m_deleted(app.store()),
      m_history(app.store()),
      m_toast(app.store()),
      m_sidebar(app.store(), app.engines(), m_clock),
      m_settings(app.store(), app.engines(), app.settings(), app.onboarding()),
      m_banner(app.store()),
      m_work(app.store(), app.commands()),
      m_engine(screens ? std::move(screens) : loadScreens()) {
    connect(&app.delegate(), &MeetingAppDelegate::askingToSaveChanged, this, [this] {
        if (m_app.delegate().askingToSave())
            show();
    });
    connect(&app.router(), &AppRouter::historyOpenChanged, this, &MainWindow::followHistory);
    // Both dialogs are about the meeting that was selected when they opened.
    connect(&app.store(), &MeetingStore::selectedIDChanged, this, [this] {
        m_app.router().setHistoryOpen(false);
        m_app.router().setExporting(false);
    });
    connect(&app.onboarding(), &Onboarding::doneChanged, this, [this] {
        if (m_app.onboarding().showing()) // in place of the player
            m_playback.pause();
    });
    connect(&app.store(), &MeetingStore::errorChanged, this, [this] {
        m_unheard = m_app.store().error() && m_window && !m_window->isVisible();
        tellUnheard();
    });
    connect(&app.store(), &MeetingStore::busyChanged, this, &MainWindow::tellUnheard);
    connect(&app.store(), &MeetingStore::recordingChanged, this, &MainWindow::tellUnheard);
    connect(&app.commands(), &AppCommands::windowWanted, this, &MainWindow::show);
    connect(&app.delegate(), &MeetingAppDelegate::closing, &app.commands(), &AppCommands::aboutToAct);
    connect(&app.commands(), &AppCommands::aboutToAct, &m_meetingPage, &MeetingPage::handIn);
}

MainWindow::~MainWindow() {
    if (m_window && m_window->isVisible())
        keepGeometry();
}

AppCommands* MainWindow::commands() const {
    return &m_app.commands();
}

AppRouter* MainWindow::router() const {
    return &m_app.router();
}

MeetingAppDelegate* MainWindow::delegate() const {
    return &m_app.delegate();
}

Onboarding* MainWindow::onboarding() const {
    return &m_app.onboarding();
}

bool MainWindow::open() {
    auto& theme = Theme::shared();
    theme.takePreferences();
    m_window = std::make_unique<QQuickWindow>();
    m_window->setTitle(QGuiApplication::applicationDisplayName());
    m_window->setMinimumSize(leastSize);
    const auto colour = [this] { m_window->setColor(Theme::shared().surface()); };
    connect(&theme, &Theme::appearanceChanged, m_window.get(), colour);
    colour();
    restoreGeometry();
    m_engine->setIncubationController(m_window->incubationController()); // makes what may come later piece by piece
    QQmlComponent screens(m_engine.get(), screen("Screens.qml"));
    const auto place = QVariant::fromValue(m_window->contentItem());
    auto* root = qobject_cast<QQuickItem*>(screens.createWithInitialProperties(
        {{QStringLiteral("frame"), QVariant::fromValue(this)}, {QStringLiteral("parent"), place}}));
    if (!root) {
        qWarning("The screens could not be loaded: %s", qUtf8Printable(screens.errorString()));
        return false;
    }
    root->setParent(m_window->contentItem());
    // Once a popup has gone and no other has taken the focus, the page has it again.
    const auto giveFocus = [this, root] {
        if (m_window->activeFocusItem() == m_window->contentItem())
            root->setFocus(true, Qt::PopupFocusReason);
    };
    connect(m_window.get(), &QQuickWindow::activeFocusItemChanged, root, giveFocus, Qt::QueuedConnection);
    m_window->installEventFilter(this);
    for (const auto signal : {&Onboarding::doneChanged, &Onboarding::stepChanged})
        connect(&m_app.onboarding(), signal, this, &MainWindow::followOnboarding);
    connect(&m_app.store(), &MeetingStore::recordingChanged, this, &MainWindow::followOnboarding);
    connect(m_window.get(), &QWindow::visibilityChanged, this, &MainWindow::followOnboarding);
    connect(m_window.get(), &QWindow::visibleChanged, &m_playback, [this](bool visible) {
        if (!visible)
            m_playback.pause();
    });
    afterNextFrame("first frame", &MainWindow::announceShown);
    QTimer::singleShot(longestWaitForFrame, this, &MainWindow::announceShown);
    QTimer::singleShot(longestWaitForFrame, this, &MainWindow::announceComplete);
    m_window->show();
    return true;
}

void MainWindow::show(const QString& token) {
    if (m_window)
        bringForward(*m_window, token);
}

void MainWindow::setInTray(bool inTray) {
    if (std::exchange(m_inTray, inTray) != inTray)
        Q_EMIT closeNoticeChanged();
}

QString MainWindow::closeNotice() const {
    const auto name = QGuiApplication::applicationDisplayName();
    return m_inTray
               ? tr("Recordings and the engines go on while the window is closed. “Open %1” in the tray brings the "
                    "window back; Ctrl+Q quits. This is said only once.")
                     .arg(name)
               : tr("Recordings and the engines go on while the window is closed. Start %1 again to bring the "
                    "window back; Ctrl+Q quits. This is said only once.")
                     .arg(name);
}

void MainWindow::close() {
    m_app.settings().setFlag(closeNoticeKey, true);
    setAskingToClose(false);
    m_window->close();
}

void MainWindow::cancelClosing() {
    setAskingToClose(false);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Close || watched != m_window.get())
        return QObject::eventFilter(watched, event);
    if (!m_app.settings().flag(closeNoticeKey).value_or(false)) {
        event->ignore();
        setAskingToClose(true);
        return true;
    }
    keepGeometry();
    return false;
}

/// What was asked for from the tray or the bus has failed, and nobody would hear of it. The window waits for the end of
/// a recording: the screen may be shared.
void MainWindow::tellUnheard() {
    if (!m_unheard || m_app.store().recording() || m_app.store().busy())
        return;
    m_unheard = false;
    show();
}

void MainWindow::afterNextFrame(const char* moment, void (MainWindow::*next)()) {
    connect(
        m_window.get(), &QQuickWindow::frameSwapped, this,
        [this, moment, next] {
            logStart(moment);
            QMetaObject::invokeMethod(this, next, Qt::QueuedConnection);
        },
        Qt::SingleShotConnection);
}

void MainWindow::announceShown() {
    if (std::exchange(m_shown, true))
        return;
    afterNextFrame("whole window", &MainWindow::announceComplete);
    Q_EMIT shownChanged();
}

void MainWindow::announceComplete() {
    if (std::exchange(m_complete, true))
        return;
    Q_EMIT completeChanged();
}

void MainWindow::followHistory() {
    if (m_app.router().historyOpen())
        m_history.open();
    else
        m_history.close();
}

/// The sound check runs while its step can be seen, and leaves the devices to a recording.
void MainWindow::followOnboarding() {
    const auto& onboarding = m_app.onboarding();
    const bool seen = onboarding.showing() && m_window->isVisible() && m_window->visibility() != QWindow::Minimized;
    std::optional<CaptureSource> source;
    if (seen && !m_app.store().recording() && !m_app.commandLine().exportsWindow) {
        if (onboarding.step() == static_cast<int>(Onboarding::Step::microphone))
            source = CaptureSource::microphone;
        else if (onboarding.step() == static_cast<int>(Onboarding::Step::meetingAudio))
            source = CaptureSource::system;
    }
    m_soundCheck.listenTo(source);
}

void MainWindow::restoreGeometry() {
    const auto& settings = m_app.settings();
    const QSize size(settings.number("WindowWidth").value_or(usualSize.width()),
                     settings.number("WindowHeight").value_or(usualSize.height()));
    m_window->resize(size.expandedTo(m_window->minimumSize()));
    const auto x = settings.number("WindowX"), y = settings.number("WindowY");
    if (!x || !y)
        return;
    // A screen that has gone since must not hide the window.
    for (const auto* screen : QGuiApplication::screens())
        if (screen->availableGeometry().contains(QPoint(*x, *y)))
            m_window->setPosition(*x, *y);
}

void MainWindow::keepGeometry() {
    if (m_window->windowStates() != Qt::WindowNoState || m_app.commandLine().exportsWindow)
        return;
    auto& settings = m_app.settings();
    settings.setNumber("WindowX", m_window->x());
    settings.setNumber("WindowY", m_window->y());
    settings.setNumber("WindowWidth", m_window->width());
    settings.setNumber("WindowHeight", m_window->height());
}

void MainWindow::setAskingToClose(bool asking) {
    if (asking == m_askingToClose)
        return;
    m_askingToClose = asking;
    Q_EMIT askingToCloseChanged();
}

} // namespace varnet
