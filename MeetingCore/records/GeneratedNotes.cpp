#include "MeetingCore/records/GeneratedNotes.h"

#include <cstddef>

namespace varnet {

std::string NoteItem::id() const {
    const std::string_view kindName = kindNames[static_cast<std::size_t>(kind)];
    return std::string(kindName) + '|' + text + '|' + owner.value_or("") + '|' + due.value_or("");
}

} // namespace varnet
