#include "MeetingCore/notes/DraftBuilder.h"

#include "MeetingCore/base/Assert.h"
#include "MeetingCore/notes/NoteGrounding.h"

#include <utility>

namespace varnet {

namespace {

constexpr int reach = 3;
constexpr int maxRun = 4;

bool belongsTo(NotesPass pass, NoteItem::Kind kind) {
    return (kind == NoteItem::Kind::action) == (pass == NotesPass::actions);
}

} // namespace

DraftBuilder::DraftBuilder(const Meeting& meeting)
    : m_sources(NoteGrounding::sources(meeting)),
      m_chunks(NoteGrounding::chunks(m_sources, chunkLimit)),
      m_hash(NoteGrounding::hash(m_sources)) {}

DraftBuilder::Step DraftBuilder::step(std::size_t index) const {
    VARNET_ASSERT(index < stepCount());
    return {index % 2 == 0 ? NotesPass::actions : NotesPass::context, m_chunks[index / 2]};
}

std::vector<std::string> DraftBuilder::take(NotesPass pass, NoteResponse answer) {
    std::vector<std::string> failures;
    auto items = NoteGrounding::normalizeMissingAssignments(std::move(answer.items));
    items = NoteGrounding::repairEvidence(std::move(items), m_sources, reach, maxRun);
    for (NoteItem& item : items) {
        if (!belongsTo(pass, item.kind))
            continue;
        try {
            NoteGrounding::validate({&item, 1}, m_sources);
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
    draft.transcriptHash = std::move(m_hash);
    draft.model = std::move(model);
    draft.createdAt = createdAt;
    draft.chunks = static_cast<std::int64_t>(m_chunks.size());
    draft.droppedItems = m_dropped;
    return draft;
}

} // namespace varnet
