#pragma once

#include "MeetingCore/notes/DraftBuilder.h"

#include <string_view>

namespace varnet {

/// What the model is told about the pass, after NotesClient::defaultInstruction or what stands in its place.
std::string_view passInstruction(NotesPass pass);

} // namespace varnet
