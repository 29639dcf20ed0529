#include "MeetingCore/notes/NotesFailure.h"

#include <string>

namespace varnet {

namespace {

std::string sentence(NotesFailure::Kind kind, std::string_view detail) {
    const std::string kept = std::string(detail) + ". The previous draft was kept.";
    switch (kind) {
    case NotesFailure::Kind::invalidEvidence:
        return "Generated notes failed the source check: " + kept;
    case NotesFailure::Kind::unsupportedAssignment:
        return "The model assigned an unsupported owner or date: " + kept;
    case NotesFailure::Kind::emptyTranscript:
        return "A timestamped transcript is needed before generating notes.";
    case NotesFailure::Kind::incomplete:
        return "The model did not finish its structured response. The previous draft was kept.";
    case NotesFailure::Kind::sourceChanged:
        break;
    }
    return "The transcript changed during generation. Generate notes again using the updated transcript.";
}

} // namespace

NotesFailure::NotesFailure(Kind kind, std::string_view detail) : Failure(sentence(kind, detail)), m_kind(kind) {}

} // namespace varnet
