#include "Varnet/models/MeetingText.h"

#include "Varnet/models/Text.h"
#include "Varnet/store/DurationCache.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace varnet::MeetingText {

namespace {

QDateTime local(Date date) {
    return QDateTime::fromMSecsSinceEpoch(std::llround(date.toUnix() * 1000));
}

} // namespace

int tone(BadgeColor color) {
    return static_cast<int>(color);
}

QDate localDay(Date date) {
    return local(date).date();
}

QString time(Date date) {
    QLocale locale;
    if (locale.language() == QLocale::C) // a machine that was given no locale: written as the dates are then
        locale = QLocale(QLocale::English, QLocale::UnitedStates);
    return locale.toString(local(date).time(), QLocale::ShortFormat).replace(QChar::Space, QChar::Nbsp);
}

QString dayAndTime(Date date) {
    const auto day = MeetingPresentation::dayHeading(date);
    return QStringLiteral("%1, %2 · %3").arg(toQString(day.main), toQString(day.second), time(date));
}

QString duration(const Meeting& meeting, const MeetingStore& store) {
    const auto length = DurationCache::shared().duration(meeting, store);
    return length ? toQString(MeetingPresentation::clock(*length)) : QString();
}

double meter(float level) {
    if (!(level > 0))
        return 0;
    return std::clamp(1 + 20 * std::log10(static_cast<double>(level)) / 60, 0.0, 1.0);
}

} // namespace varnet::MeetingText
