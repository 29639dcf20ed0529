#pragma once

#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QFont>
#include <QMap>
#include <QObject>
#include <QVariantMap>

#include <optional>

namespace varnet {

/// What the user of the desktop has set for all programs, as far as the toolkit does not follow it by itself. The
/// desktop is asked when the object is made, and nothing waits for the answer: until it comes, and on a desktop that
/// gives none, the values are those of an untouched one. Main thread.
class DesktopPreferences : public QObject {
    Q_OBJECT
public:
    enum class ColorScheme { none, dark, light };

    struct Values {
        ColorScheme colorScheme = ColorScheme::none;
        bool highContrast = false;
        bool reducedMotion = false;
        double textScale = 1;           ///< of every font, 0.5 to 3; 1 where the toolkit scales by itself
        std::optional<QFont> font = {}; ///< of the interface; absent where the toolkit finds it by itself

        bool operator==(const Values&) const = default;
    };

    /// The settings as the desktop keeps them: of each namespace the keys.
    using Settings = QMap<QString, QVariantMap>;

    /// What the settings say to a program on that desktop (as XDG_CURRENT_DESKTOP has it) whose windows are that
    /// platform's (as QGuiApplication::platformName() has it). What makes no sense counts as not set.
    static Values understood(const Settings& settings, const QString& desktop, const QString& platform);

    explicit DesktopPreferences(QObject* parent = nullptr);

    const Values& values() const { return m_values; }

    /// Takes the desktop's answer if it is here already, so that a window that is about to be shown starts with it.
    void takeAnswer();

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void take(const QString& space, const QString& key, const QDBusVariant& value);

private:
    void understand();

    std::optional<QDBusPendingCall> m_answer; ///< until it is taken
    Settings m_settings;
    Values m_values;
};

} // namespace varnet
