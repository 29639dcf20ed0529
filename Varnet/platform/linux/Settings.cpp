#include "Varnet/platform/Settings.h"

#include "Varnet/platform/Paths.h"

#include <QDebug>

namespace varnet {

namespace {

QString toKey(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

} // namespace

Settings::Settings(std::filesystem::path file) {
    if (file.empty()) {
        // The path is given in full because QSettings looks at the environment only once in a process.
        file = Paths::configuration() / "Varnet/Varnet.conf";
        m_system = std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::SystemScope, "Varnet", "Varnet");
        m_system->setFallbacksEnabled(false);
    }
    m_user = std::make_unique<QSettings>(QString::fromStdString(file.string()), QSettings::IniFormat);
}

std::optional<std::string> Settings::text(std::string_view key) const {
    QVariant value = m_user->value(toKey(key));
    if (!value.isValid() && m_system)
        value = m_system->value(toKey(key));
    // A comma in a file edited by hand makes a list of what was meant as one text.
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(", ").toStdString();
    if (!value.isValid())
        return std::nullopt;
    return value.toString().toStdString();
}

std::optional<bool> Settings::flag(std::string_view key) const {
    const auto value = text(key);
    if (value == "true" || value == "1")
        return true;
    if (value == "false" || value == "0")
        return false;
    return std::nullopt;
}

std::optional<int> Settings::number(std::string_view key) const {
    const auto value = text(key);
    bool valid = false;
    const int number = value ? QString::fromStdString(*value).toInt(&valid) : 0;
    return valid ? std::optional(number) : std::nullopt;
}

void Settings::setText(std::string_view key, std::string_view value) {
    store(key, QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size())));
}

void Settings::setFlag(std::string_view key, bool value) {
    store(key, value);
}

void Settings::setNumber(std::string_view key, int value) {
    store(key, value);
}

void Settings::remove(std::string_view key) {
    m_user->remove(toKey(key));
    write();
}

void Settings::store(std::string_view key, const QVariant& value) {
    m_user->setValue(toKey(key), value);
    write();
}

void Settings::write() {
    m_user->sync();
    if (m_user->status() != QSettings::NoError)
        qWarning() << "The settings could not be saved to" << m_user->fileName();
}

} // namespace varnet
