#include "MeetingCore/calendar/CalendarEvents.h"

#include "MeetingCore/records/MeetingStatus.h"

namespace varnet {

Meeting CalendarEvent::makeMeeting() const {
    Meeting meeting = Meeting::make(title);
    meeting.status = source.cancelled ? MeetingStatus::cancelled : MeetingStatus::scheduled;
    meeting.source = source; // it has the times
    meeting.attendees = attendees;
    return meeting;
}

} // namespace varnet
