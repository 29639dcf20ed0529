#pragma once

#include "MeetingCore/records/GeneratedNotes.h"
#include "MeetingCore/records/Meeting.h"
#include "Varnet/async/Task.h"

#include <QUrl>

#include <filesystem>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>

namespace varnet {

class LoopbackHTTP;

/// Has the local notes engine draft the notes of a meeting. Every point of an answer is held against the transcript,
/// one by one, so that a bad point costs only itself. A value; nothing is shared between two runs but the session.
struct NotesClient {
    /// What the user sees of a run while it lasts. Each may be empty. Main thread.
    using Progress = std::function<void(int step, int stepCount)>;     ///< before each request, from 1
    using InspectOutput = std::function<void(std::string_view bytes)>; ///< what the model wrote, as it came
    using Dropped = std::function<void(const std::string& reason)>;    ///< why a point was removed

    /// The first part of what the model is told.
    static const std::string defaultInstruction;

    QUrl baseURL{QStringLiteral("http://127.0.0.1:17864")};
    std::shared_ptr<LoopbackHTTP> session; ///< carries the requests; made for the run when it is null
    std::string instruction = defaultInstruction;
    std::filesystem::path keyFile = defaultKeyFile(); ///< the secret that the engine asks for

    /// "Varnet/notes-service.key" in the application support folder.
    static std::filesystem::path defaultKeyFile();

    /// Asks for actions, then for decisions and summary, of one part of the transcript after another. Grounding runs on
    /// the worker. Throws Failure for a base URL that is not plain HTTP to 127.0.0.1, localhost or ::1, with nothing
    /// sent, and when the engine refuses; NotesFailure for a transcript without words, for an answer that is
    /// incomplete, and when points were proposed but none is carried by the transcript; the session's failure as it is;
    /// Cancelled after `stop`, which ends a request at once. Main thread.
    Task<GeneratedNotes> generate(Meeting meeting, Progress progress = {}, InspectOutput inspectOutput = {},
                                  Dropped dropped = {}, std::stop_token stop = {}) const;
};

} // namespace varnet
