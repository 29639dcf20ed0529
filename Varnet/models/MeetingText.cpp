#include "Varnet/models/MeetingText.h"

#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/records/Meeting.h"
#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingStore.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace varnet::MeetingText {

namespace {

constexpr double bytesPerSecond = 32'000; // 16,000 frames of 16 bits

/// Seconds of audio in a file that DurableWAV wrote; absent when it cannot be seen or holds none.
std::optional<double> audioSeconds(const std::filesystem::path& file) {
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (error || size <= DurableWAV::headerSize)
        return {};
    return static_cast<double>(size - DurableWAV::headerSize) / bytesPerSecond;
}

std::optional<double> seconds(const Meeting& meeting, const MeetingStore& store) {
    if (store.recording() && store.recordingID() == meeting.id)
        return {};
    if (const auto audio = store.audioURL(meeting))
        return audioSeconds(*audio);
    if (meeting.turns.empty() || meeting.turns.back().end <= 0)
        return {};
    return meeting.turns.back().end;
}

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
    return locale.toString(local(date).time(), QLocale::ShortFormat);
}

QString duration(const Meeting& meeting, const MeetingStore& store) {
    const auto length = seconds(meeting, store);
    return length ? toQString(MeetingPresentation::clock(*length)) : QString();
}

double meter(float level) {
    if (!(level > 0))
        return 0;
    return std::clamp(1 + 20 * std::log10(static_cast<double>(level)) / 60, 0.0, 1.0);
}

} // namespace varnet::MeetingText
