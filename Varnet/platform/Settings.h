#pragma once

#include <QSettings>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace varnet {

/// What the user has chosen, by key, in one INI file that survives the program.
///
/// The file is "Varnet/Varnet.conf" in the user's configuration folder; a key that it does not hold is looked up in the
/// system-wide file of the same name (/etc/xdg). Several objects on one file see each other's changes at once. A value
/// that cannot be read as the asked type counts as absent. A failed write is logged and the value holds until the
/// program ends. Main thread only.
class Settings {
public:
    /// `file` replaces the user's file, and then there is no system-wide one.
    explicit Settings(std::filesystem::path file = {});

    std::optional<std::string> text(std::string_view key) const;
    std::optional<bool> flag(std::string_view key) const; ///< "true" or "false", "1" or "0"
    std::optional<int> number(std::string_view key) const;

    void setText(std::string_view key, std::string_view value);
    void setFlag(std::string_view key, bool value);
    void setNumber(std::string_view key, int value);

    /// Forgets the user's value; a system-wide one then shows again.
    void remove(std::string_view key);

private:
    void store(std::string_view key, const QVariant& value);
    void write();

    std::unique_ptr<QSettings> m_user;
    std::unique_ptr<QSettings> m_system; ///< null for a file of the caller's
};

} // namespace varnet
