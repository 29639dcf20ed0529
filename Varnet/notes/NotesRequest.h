#pragma once

#include "MeetingCore/notes/DraftBuilder.h"

#include <string>
#include <string_view>

/// The chat-completions wire of the notes engine: what one request says, and what its answer holds. Pure; any thread.
namespace varnet::NotesRequest {

/// The body that asks for the points of one step: the instruction and the pass's own as the system's message, the
/// sources as data in the user's, and the schema that the answer is forced into. Text that is no UTF-8 is mended.
std::string body(std::string_view instruction, const DraftBuilder::Step& step);

/// What the model wrote, out of the engine's answer. Throws NotesFailure (incomplete) unless the model came to its
/// end by itself and wrote text.
std::string contentOf(const std::string& answer);

/// The points in what the model wrote. Throws NotesFailure (incomplete) for what NoteResponse::decode refuses; what the
/// points claim is not looked at.
NoteResponse pointsIn(std::string_view content);

} // namespace varnet::NotesRequest
