#include "MeetingCore/notes/DraftBuilder.h"

#include "MeetingCore/base/Assert.h"

#include <utility>

namespace varnet {

namespace {

constexpr int reach = 3;
constexpr int maxRun = 4;

bool belongsTo(NotesPass pass, const NoteItem& item) {
    return (item.kind == NoteItem::Kind::action) == (pass == NotesPass::actions);
}

} // namespace

DraftBuilder::DraftBuilder(const Meeting& meeting)
    : m_sources(NoteGrounding::sources(meeting)),
      m_index(m_sources),
      m_encoded(NoteGrounding::encoded(m_sources, chunkLimit)) {
    if (m_sources.empty())
        throw NotesFailure(NotesFailure::Kind::emptyTranscript);
}

DraftBuilder::Step DraftBuilder::step(std::size_t index) const {
    VARNET_ASSERT(index < stepCount());
    return {index % 2 == 0 ? NotesPass::actions : NotesPass::context, m_encoded.chunks[index / 2]};
}

std::vector<std::string> DraftBuilder::take(NotesPass pass, NoteResponse answer) {
    std::erase_if(answer.items, [pass](const NoteItem& item) { return !belongsTo(pass, item); });
    auto items = NoteGrounding::normalizeMissingAssignments(std::move(answer.items));
    items = NoteGrounding::repairEvidence(std::move(items), m_index, reach, maxRun);
    std::vector<std::string> failures;
    for (NoteItem& item : items) {
        try {
            NoteGrounding::validate({&item, 1}, m_index);
        } catch (const NotesFailure& failure) {
            if (!m_firstFailure)
                m_firstFailure = failure;
            ++m_dropped;
            failures.emplace_back(failure.what());
            continue;
        }
        if (m_ids.insert(item.id()).second)
            m_items.push_back(std::move(item));
    }
    return failures;
}

GeneratedNotes DraftBuilder::finish(std::string model, Date createdAt) && {
    if (m_items.empty() && m_firstFailure)
        throw NotesFailure(*m_firstFailure);
    GeneratedNotes draft;
    draft.items = std::move(m_items);
    draft.sources = std::move(m_sources);
    draft.transcriptHash = std::move(m_encoded.hash);
    draft.model = std::move(model);
    draft.createdAt = createdAt;
    draft.chunks = static_cast<std::int64_t>(m_encoded.chunks.size());
    draft.droppedItems = m_dropped;
    return draft;
}

} // namespace varnet
