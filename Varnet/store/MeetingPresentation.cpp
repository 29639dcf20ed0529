#include "Varnet/store/MeetingPresentation.h"

#include "MeetingCore/base/Assert.h"
#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/store/DurationCache.h"
#include "Varnet/store/MeetingStore.h"

#include <QCoreApplication>
#include <QDebug>
#include <QStringList>

#include <unicode/calendar.h>
#include <unicode/datefmt.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <utility>

namespace varnet {

namespace {

bool isAnyOf(std::string_view status, std::initializer_list<std::string_view> texts) {
    return std::ranges::find(texts, status) != texts.end();
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// The words in the language of the user.
struct Words {
    Q_DECLARE_TR_FUNCTIONS(MeetingPresentation)
};

StatusBadge badgeOf(const QString& text, BadgeColor color, bool marked) {
    return {text.toStdString(), color, marked};
}

/// The badge that the record alone decides.
StatusBadge storedBadge(const Meeting& meeting) {
    const std::string_view status = meeting.status;
    if (isAnyOf(status, {MeetingStatus::finishingTranscript, MeetingStatus::preparingAudio,
                         MeetingStatus::preparingMicrophone, MeetingStatus::transcribing}))
        return badgeOf(Words::tr("Working"), BadgeColor::amber, true);
    if (status == MeetingStatus::didNotStart)
        return badgeOf(Words::tr("No audio saved"), BadgeColor::rec, false);
    if (status.starts_with("Interrupted") || contains(status, "attention") || contains(status, "incomplete"))
        return badgeOf(Words::tr("Needs attention"), BadgeColor::rec, true);
    if (status == MeetingStatus::savedRetryTranscription && !meeting.generatedNotes)
        return badgeOf(meeting.turns.empty() ? Words::tr("Needs transcript") : Words::tr("Transcript incomplete"),
                       BadgeColor::amber, true);
    if (meeting.generatedNotes)
        return badgeOf(Words::tr("Notes ready"), BadgeColor::ok, false);
    if (!meeting.turns.empty())
        return badgeOf(Words::tr("Transcript only"), BadgeColor::faint, true);
    if (status.starts_with("Scheduled"))
        return badgeOf(Words::tr("Scheduled"), BadgeColor::faint, true);
    if (status.starts_with("Cancelled"))
        return badgeOf(Words::tr("Cancelled"), BadgeColor::faint, true);
    return badgeOf(meeting.audioFilename ? Words::tr("Audio only") : Words::tr("Empty"), BadgeColor::faint, true);
}

/// The locale that the user has chosen for dates; Qt has set it at the start of the program.
std::string userLocale() {
    const char* name = std::setlocale(LC_TIME, nullptr);
    const std::string_view text = name ? name : "";
    return text.empty() || text == "C" || text.starts_with("C.") || text == "POSIX" ? "en_US" : std::string(text);
}

/// A date in the words of a locale; `skeleton` names the parts, the locale orders them.
std::string formatted(Date date, const char* skeleton, const std::string& localeName) {
    // A format takes far longer to make than to use. It is not for several threads at once.
    thread_local std::map<std::pair<std::string_view, std::string>, std::unique_ptr<icu::DateFormat>> formats;
    auto& format = formats[{skeleton, localeName}];
    if (!format) {
        UErrorCode status = U_ZERO_ERROR;
        const auto locale = icu::Locale::createCanonical(localeName.c_str());
        format.reset(icu::DateFormat::createInstanceForSkeleton(icu::UnicodeString(skeleton), locale, status));
        if (U_FAILURE(status) || !format) {
            qWarning("No date format for locale %s: %s", localeName.c_str(), u_errorName(status));
            return {};
        }
    }
    icu::UnicodeString text;
    format->format(date.toUnix() * 1000, text);
    std::string utf8;
    return text.toUTF8String(utf8);
}

/// Days since the start of the Julian count, in the local time zone. Empty without a calendar.
std::optional<std::int32_t> localDay(Date date) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(icu::Locale::getUS(), status));
    if (U_FAILURE(status) || !calendar)
        return {};
    calendar->setTime(date.toUnix() * 1000, status);
    const auto day = calendar->get(UCAL_JULIAN_DAY, status);
    return U_SUCCESS(status) ? std::optional(day) : std::nullopt;
}

} // namespace

StatusBadge MeetingPresentation::badge(const Meeting& meeting, const MeetingStore& store) {
    if (store.recording() && store.recordingID() == meeting.id)
        return badgeOf(Words::tr("Recording"), BadgeColor::rec, false);
    if (store.notesMeetingID() == meeting.id)
        return badgeOf(Words::tr("Writing notes"), BadgeColor::amber, true);
    return storedBadge(meeting);
}

bool MeetingPresentation::isFromCalendar(const Meeting& meeting) {
    return meeting.source && isAnyOf(meeting.source->provider, {"googlecalendar", "eventkit"});
}

std::string MeetingPresentation::subtitle(const Meeting& meeting) {
    QStringList parts;
    if (meeting.audioFilename == "imported.wav")
        parts << Words::tr("Imported audio");
    if (isFromCalendar(meeting))
        parts << Words::tr("From calendar");
    if (const auto speakers = static_cast<int>(speakerCount(meeting)); speakers > 0)
        parts << Words::tr("%n speakers", nullptr, speakers);
    if (meeting.generatedNotes) {
        const auto actions = std::ranges::count(meeting.generatedNotes->items, NoteItem::Kind::action, &NoteItem::kind);
        if (actions > 0)
            parts << Words::tr("%n to-dos", nullptr, static_cast<int>(actions));
    }
    if (parts.empty())
        parts << (meeting.turns.empty() ? Words::tr("No transcript yet") : Words::tr("Transcript"));
    return parts.join(QStringLiteral(" · ")).toStdString();
}

std::int64_t MeetingPresentation::speakerCount(const Meeting& meeting) {
    std::set<std::string_view> labels;
    for (const auto& turn : meeting.turns) {
        if (turn.speaker != "Unassigned")
            labels.insert(turn.speaker);
    }
    return static_cast<std::int64_t>(labels.size());
}

DayHeading MeetingPresentation::dayHeading(Date date) {
    return dayHeading(date, Date::now(), userLocale());
}

DayHeading MeetingPresentation::dayHeading(Date date, Date now, const std::string& locale) {
    const auto day = localDay(date);
    const auto today = localDay(now);
    if (day && today && (*day == *today || *day == *today - 1))
        return {(*day == *today ? Words::tr("Today") : Words::tr("Yesterday")).toStdString(),
                formatted(date, "EEEEMMMMd", locale)};
    return {formatted(date, "EEEE", locale), formatted(date, "yMMMMd", locale)};
}

std::string MeetingPresentation::clock(double seconds) {
    const double rounded = std::round(seconds);
    VARNET_ASSERT(std::isfinite(rounded) && std::abs(rounded) < 0x1p63);
    const auto total = std::max<std::int64_t>(0, static_cast<std::int64_t>(rounded));

    std::array<char, 40> text{};
    const auto hours = static_cast<long long>(total / 3600);
    const auto minutes = static_cast<int>(total / 60 % 60);
    const auto rest = static_cast<int>(total % 60);
    if (hours == 0)
        std::snprintf(text.data(), text.size(), "%d:%02d", minutes, rest);
    else
        std::snprintf(text.data(), text.size(), "%lld:%02d:%02d", hours, minutes, rest);
    return text.data();
}

std::optional<TranscriptShortfall> MeetingPresentation::transcriptShortfall(const Meeting& meeting,
                                                                            const MeetingStore& store) {
    if (meeting.status != MeetingStatus::savedRetryTranscription || meeting.turns.empty())
        return {};
    const auto audio = DurationCache::shared().duration(meeting, store);
    const double end = meeting.turns.back().end;
    return audio && *audio - end > 5.0 ? std::optional(TranscriptShortfall{end, *audio}) : std::nullopt;
}

std::string MeetingPresentation::recordingTitle(Date date) {
    return recordingTitle(date, userLocale());
}

std::string MeetingPresentation::recordingTitle(Date date, const std::string& locale) {
    return "Meeting · " + formatted(date, "yMMMdjm", locale);
}

} // namespace varnet
