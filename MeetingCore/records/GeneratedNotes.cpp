#include "MeetingCore/records/GeneratedNotes.h"

#include "MeetingCore/records/Meeting.h"

#include <algorithm>
#include <cstddef>

namespace varnet {

namespace {

constexpr std::array<std::string_view, NoteItem::kindNames.size()> headings{"Summary", "Decisions", "Action items"};

std::string quoteLine(const NoteEvidence& evidence, const std::vector<NoteSource>& sources) {
    const auto source = std::ranges::find(sources, evidence.source, &NoteSource::id);
    const bool known = source != sources.end();
    return "  - [" + evidence.source + " · " + Meeting::timestamp(known ? source->start : 0) + "] " +
           (known ? source->speaker : "Unknown") + ": “" + evidence.quote + "”\n";
}

std::string itemLines(const NoteItem& item, const std::vector<NoteSource>& sources) {
    std::string text = "- " + item.text;
    if (item.owner)
        text += " — Owner: " + *item.owner;
    if (item.due)
        text += " — Due: " + *item.due;
    text += '\n';
    for (const NoteEvidence& evidence : item.evidence)
        text += quoteLine(evidence, sources);
    return text;
}

} // namespace

std::string NoteItem::id() const {
    const std::string_view kindName = kindNames[static_cast<std::size_t>(kind)];
    return std::string(kindName) + '|' + text + '|' + owner.value_or("") + '|' + due.value_or("");
}

std::string GeneratedNotes::markdown() const {
    std::string text = "## Generated draft\n\nModel: " + model + " · " + createdAt.iso8601() +
                       "\n\nReview the meaning and assignments; exact supporting quotes were checked.\n";
    if (const std::int64_t dropped = droppedItems.value_or(0); dropped != 0)
        text += "\nRemoved " + std::to_string(dropped) + (dropped == 1 ? " point that" : " points that") +
                " didn't match the transcript.\n";
    for (std::size_t kind = 0; kind < headings.size(); ++kind) {
        std::string lines;
        for (const NoteItem& item : items)
            if (static_cast<std::size_t>(item.kind) == kind)
                lines += itemLines(item, sources);
        if (!lines.empty())
            text.append("\n### ").append(headings[kind]).append("\n\n") += lines;
    }
    if (items.empty())
        text += "\nNo supported summary items were generated.\n";
    return text;
}

} // namespace varnet
