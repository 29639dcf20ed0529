#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/records/Meeting.h"
#include "MeetingCore/records/MeetingSource.h"

#include <optional>
#include <string>
#include <vector>

namespace varnet {

/// One event of a calendar, of this machine or of a connected account.
struct CalendarEvent {
    MeetingSource source;               ///< identity, and the times as the provider wrote them
    std::string title;                  ///< never empty: "Untitled meeting" where the provider has none
    std::optional<Date> start;          ///< absent for an all-day event and a cancelled one without a usable time
    std::optional<std::string> allDay;  ///< the day as "yyyy-MM-dd" of an all-day event
    std::string timeZone;               ///< identifier
    std::vector<std::string> attendees; ///< display names, else e-mail addresses
    std::optional<std::string> joinURL; ///< link to the call
    std::optional<Date> end;

    /// A new meeting for the event, made now and without a transcript: scheduled, or cancelled if the event is.
    Meeting makeMeeting() const;

    bool operator==(const CalendarEvent&) const = default;
};

} // namespace varnet
