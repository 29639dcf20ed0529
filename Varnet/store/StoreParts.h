#pragma once

#include "Varnet/async/Task.h"

#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

namespace varnet {

class AudioCapture;
class LiveSpeech;
class SleepInhibitor;
struct LoadedMeetings;

/// What a MeetingStore is built from. Whatever is left empty is the real one.
struct StoreParts {
    std::function<std::unique_ptr<AudioCapture>()> makeCapture;
    std::function<std::shared_ptr<LiveSpeech>(QUrl speechURL)> makeLiveSpeech;
    std::function<Task<std::unique_ptr<SleepInhibitor>>(QString reason)> inhibitSleep; ///< gives null when it cannot
    std::function<LoadedMeetings()> load; ///< the records of the library, read since its lock was taken
    QUrl speechURL{QStringLiteral("http://127.0.0.1:17863")};
    QUrl notesURL{QStringLiteral("http://127.0.0.1:17864")};
    /// Whether the library on disk may be changed. False for a run that only shows it, perhaps beside a process that is
    /// recording: nothing is repaired or saved then, and no recording starts.
    bool writable = true;
};

} // namespace varnet
