#include "Varnet/models/FoundWords.h"

#include "MeetingCore/base/ByteSearch.h"
#include "MeetingCore/base/Text.h"
#include "Varnet/models/Text.h"
#include "Varnet/models/Theme.h"

namespace varnet::FoundWords {

namespace {

/// What a hit begins and ends with.
struct Mark {
    QString begin;
    QString end;
};

Mark underlined() {
    return {QStringLiteral("<u>"), QStringLiteral("</u>")};
}

Mark filled(const QColor& ground, const QColor& ink) {
    return {QStringLiteral("<span style=\"color:%1;background-color:%2\">").arg(ink.name(), ground.name()),
            QStringLiteral("</span>")};
}

/// Styled text draws white space together, rich text is told not to.
QString escaped(std::string_view text, bool styled) {
    auto escaped = toQString(text).toHtmlEscaped();
    if (styled)
        escaped.replace(QStringLiteral("  "), QStringLiteral(" &nbsp;")).replace(u'\n', QStringLiteral("<br>"));
    return escaped;
}

} // namespace

std::vector<std::size_t> places(std::string_view lowerText, std::string_view query) {
    std::vector<std::size_t> found;
    for (std::size_t at = 0; at + query.size() <= lowerText.size(); at += query.size()) {
        const auto next = findBytes(lowerText.substr(at), query);
        if (next == std::string_view::npos)
            break;
        at += next;
        found.push_back(at);
    }
    return found;
}

QString marked(std::string_view text, std::string_view query, std::optional<std::size_t> current) {
    const auto found = places(lowerCased(text), query);
    if (found.empty())
        return {};
    const auto& theme = Theme::shared();
    const auto hit = underlined(), currentHit = filled(theme.accent(), theme.onAccent());
    OriginalPlaces original(text);
    QString words;
    std::size_t done = 0;
    for (const auto place : found) {
        const auto begin = original.of(place), end = original.of(place + query.size());
        const auto& mark = place == current ? currentHit : hit;
        words += escaped(text.substr(done, begin - done), !current) + mark.begin +
                 escaped(text.substr(begin, end - begin), !current) + mark.end;
        done = end;
    }
    words += escaped(text.substr(done), !current);
    if (!current)
        return words;
    return QStringLiteral("<p style=\"white-space:pre-wrap;-qt-line-height-type:fixed;line-height:%1px\">%2</p>")
        .arg(QString::number(theme.reading().lineHeight), words);
}

} // namespace varnet::FoundWords
