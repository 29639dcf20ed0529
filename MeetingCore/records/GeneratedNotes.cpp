#include "MeetingCore/records/GeneratedNotes.h"

#include <string_view>

namespace varnet {

namespace {

std::string_view kindText(NoteItem::Kind kind) {
    switch (kind) {
    case NoteItem::Kind::summary:
        return "summary";
    case NoteItem::Kind::decision:
        return "decision";
    case NoteItem::Kind::action:
        break;
    }
    return "action";
}

} // namespace

std::string NoteItem::id() const {
    return std::string(kindText(kind)) + '|' + text + '|' + owner.value_or("") + '|' + due.value_or("");
}

} // namespace varnet
