#pragma once

#include "MeetingCore/records/Meeting.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace varnet {

class MeetingStore;

/// How long the recordings are: a header is read once for each state of its file. Main thread.
class DurationCache {
public:
    /// Seconds of the meeting's audio, or the end of its last turn when it has no audio file. Absent during its
    /// recording, for a file that is no audio, and when nothing tells.
    std::optional<double> duration(const Meeting& meeting, const MeetingStore& store);

    /// The program's one cache.
    static DurationCache& shared();

private:
    std::unordered_map<std::string, double> m_values; ///< by path, size and time of the last change
};

} // namespace varnet
