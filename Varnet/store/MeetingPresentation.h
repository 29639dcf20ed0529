#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/records/Meeting.h"

#include <cstdint>
#include <optional>
#include <string>

namespace varnet {

class MeetingStore;

/// Which of the theme's colours a badge has.
enum class BadgeColor { rec, amber, ok, faint };

/// The state of a meeting in a word or two, as a library row shows it.
struct StatusBadge {
    std::string text;
    BadgeColor color = BadgeColor::faint;
    bool marked = false; ///< drawn with a mark before the text

    bool operator==(const StatusBadge&) const = default;
};

/// The two lines above the meetings of one day.
struct DayHeading {
    std::string main;
    std::string second;

    bool operator==(const DayHeading&) const = default;
};

/// How much of a recording has no transcript, in seconds from its start.
struct TranscriptShortfall {
    double end = 0;   ///< where the transcript stops
    double audio = 0; ///< where the audio stops

    bool operator==(const TranscriptShortfall&) const = default;
};

/// The rules that turn a meeting and the state of the store into the words of the library. Main thread; nothing here
/// changes a meeting. Dates are in the local time zone; `locale` is an ICU or POSIX name such as "en_US".
namespace MeetingPresentation {

StatusBadge badge(const Meeting& meeting, const MeetingStore& store);

/// Whether the meeting stands for an event of a calendar.
bool isFromCalendar(const Meeting& meeting);

/// Where a meeting came from, how many spoke and what is to do, joined by " · "; else whether it has a transcript.
std::string subtitle(const Meeting& meeting);

/// How many speaker labels the turns have, without "Unassigned". Two labels with one name are two speakers.
std::int64_t speakerCount(const Meeting& meeting);

/// "Today" or "Yesterday" over the day, such as "Thursday, March 5"; for an earlier or a later date the weekday over
/// the date with its year.
DayHeading dayHeading(Date date);
DayHeading dayHeading(Date date, Date now, const std::string& locale);

/// A duration as "0:59" or "1:00:00", rounded to whole seconds; negative counts as 0. A value that is not finite or
/// does not fit 64 bits ends the program.
std::string clock(double seconds);

/// Where a transcript that can be tried again stops more than five seconds before its audio does.
std::optional<TranscriptShortfall> transcriptShortfall(const Meeting& meeting, const MeetingStore& store);

/// The title of a recording that belongs to no calendar event: "Meeting · " and the date and time.
std::string recordingTitle(Date date);
std::string recordingTitle(Date date, const std::string& locale);

} // namespace MeetingPresentation

} // namespace varnet
