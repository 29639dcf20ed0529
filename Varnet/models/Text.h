#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace varnet {

/// The one crossing between the store's UTF-8 text and the text of the screens.
inline QString toQString(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

inline std::string toUtf8(const QString& text) {
    return text.toStdString();
}

} // namespace varnet
