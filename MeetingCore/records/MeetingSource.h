#pragma once

#include "MeetingCore/base/Date.h"

#include <optional>
#include <string>

namespace varnet {

/// Where a meeting came from: an event of a calendar, or a record of an import.
struct MeetingSource {
    std::string provider;    ///< "googlecalendar", "eventkit" (a calendar of this machine), or the name of an import
    std::string accountID;   ///< connected account; for "eventkit" the title of the calendar's account
    std::string containerID; ///< calendar identifier
    std::string recordID;    ///< event identifier at the provider
    Date importedAt;         ///< when this source record was made
    std::optional<std::string> sourceURL;
    std::optional<std::string> scheduledStart; ///< exactly as the provider wrote it
    std::optional<std::string> scheduledEnd;   ///< exactly as the provider wrote it
    bool cancelled = false;

    /// Identity of a source: provider, account, container and record joined by "|".
    std::string key() const;

    bool operator==(const MeetingSource&) const = default;
};

} // namespace varnet
