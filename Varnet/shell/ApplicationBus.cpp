#include "Varnet/shell/ApplicationBus.h"

#include "Varnet/shell/ImportQueue.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace varnet {

namespace {

const auto busName = QStringLiteral("org.varnet.Varnet");
const auto objectPath = QStringLiteral("/org/varnet/Varnet");
const auto interfaceName = QStringLiteral("org.freedesktop.Application");
/// Long: a request that is given up here is still carried out by an owner that was only busy.
constexpr int answerMilliseconds = 25'000;

} // namespace

ApplicationBus::ApplicationBus(BusActions actions, QDBusConnection connection)
    : m_actions(std::move(actions)), m_connection(std::move(connection)) {}

ApplicationBus::~ApplicationBus() {
    unregisterName();
}

void ApplicationBus::unregisterName() {
    if (!std::exchange(m_registered, false))
        return;
    m_connection.unregisterService(busName);
    m_connection.unregisterObject(objectPath);
}

ApplicationBus::Registration ApplicationBus::registerName() {
    if (!m_connection.isConnected() || !m_connection.interface())
        return Registration::noBus;
    if (!m_connection.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots))
        return Registration::nameTaken;
    const auto reply = m_connection.interface()->registerService(busName, QDBusConnectionInterface::DontQueueService,
                                                                 QDBusConnectionInterface::DontAllowReplacement);
    m_registered = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
    if (m_registered)
        return Registration::registered;
    m_connection.unregisterObject(objectPath);
    return Registration::nameTaken;
}

std::optional<pid_t> ApplicationBus::owner(const QDBusConnection& connection) {
    if (!connection.isConnected() || !connection.interface())
        return {};
    const auto reply = connection.interface()->servicePid(busName);
    if (!reply.isValid())
        return {};
    return static_cast<pid_t>(reply.value());
}

ApplicationBus::Answer ApplicationBus::askOwner(const QList<QUrl>& files, const QDBusConnection& connection) {
    QVariantMap platformData;
    for (const auto& [variable, key] :
         {std::pair{"XDG_ACTIVATION_TOKEN", "activation-token"}, std::pair{"DESKTOP_STARTUP_ID", "desktop-startup-id"}})
        if (qEnvironmentVariableIsSet(variable))
            platformData.insert(QString::fromLatin1(key), qEnvironmentVariable(variable));
    auto message = QDBusMessage::createMethodCall(
        busName, objectPath, interfaceName, files.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open"));
    message.setAutoStartService(false);
    if (!files.isEmpty())
        message << QUrl::toStringList(files, QUrl::FullyEncoded);
    message << platformData;
    const auto reply = connection.call(message, QDBus::Block, answerMilliseconds);
    if (reply.errorName() == QDBusError::errorString(QDBusError::InvalidArgs))
        return {true, reply.errorMessage()};
    return {reply.type() == QDBusMessage::ReplyMessage, {}};
}

void ApplicationBus::Activate(const QVariantMap& platformData) {
    show(platformData);
}

void ApplicationBus::Open(const QStringList& uris, const QVariantMap& platformData) {
    show(platformData);
    QList<QUrl> files;
    QStringList others;
    for (const auto& uri : uris) {
        const auto address = QUrl::fromEncoded(uri.toUtf8());
        if (ImportQueue::localFile(address))
            files << address;
        else
            others << uri;
    }
    if (!files.isEmpty())
        m_actions.importFiles(files);
    if (!others.isEmpty())
        sendErrorReply(QDBusError::InvalidArgs,
                       QStringLiteral("No file on this computer: %1").arg(others.join(QStringLiteral(", "))));
}

void ApplicationBus::ActivateAction(const QString& name, const QVariantList&, const QVariantMap& platformData) {
    if (name == QLatin1String("show"))
        show(platformData);
    else if (name == QLatin1String("new-recording")) {
        show(platformData);
        m_actions.newRecording();
    } else if (name == QLatin1String("toggle-recording"))
        m_actions.toggleRecording();
    else if (name == QLatin1String("quit"))
        m_actions.quit();
    else
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no action \"%1\".").arg(name));
}

void ApplicationBus::show(const QVariantMap& platformData) {
    const auto token = platformData.value(QStringLiteral("activation-token")).toString();
    // Older desktops give the same thing by this name only.
    m_actions.show(token.isEmpty() ? platformData.value(QStringLiteral("desktop-startup-id")).toString() : token);
}

} // namespace varnet
