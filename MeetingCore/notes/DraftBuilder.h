#pragma once

#include "MeetingCore/notes/IndexedSources.h"
#include "MeetingCore/notes/NoteGrounding.h"
#include "MeetingCore/notes/NotesFailure.h"
#include "MeetingCore/records/GeneratedNotes.h"
#include "MeetingCore/records/Meeting.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

namespace varnet {

/// What one request asks the model for.
enum class NotesPass {
    actions, ///< actions alone
    context, ///< decisions and summary
};

/// The drafting of one meeting's notes apart from the model: which parts of the transcript are asked about in which
/// order, and what stands of the answers. Pure; one thread at a time.
class DraftBuilder {
public:
    static constexpr std::size_t chunkLimit = 6000; ///< bytes of JSON in a group of sources

    /// One request to the model.
    struct Step {
        NotesPass pass = NotesPass::actions;
        std::span<const NoteSource> sources; ///< of the builder, valid as long as it lives
    };

    /// Throws NotesFailure (emptyTranscript) for a meeting without words, JsonFailure for times that cannot be stored.
    explicit DraftBuilder(const Meeting& meeting);
    DraftBuilder(const DraftBuilder&) = delete; // the index of a copy would refer to the original's sources
    DraftBuilder& operator=(const DraftBuilder&) = delete;

    /// Two to each group of sources, which come in order: its actions first.
    std::size_t stepCount() const { return 2 * m_encoded.chunks.size(); }
    Step step(std::size_t index) const;

    /// Takes over the points of an answer that belong to the pass and are carried by their quotes; a point that is
    /// there already is not added again. Gives the descriptions of the failures of the others, in order.
    std::vector<std::string> take(NotesPass pass, NoteResponse answer);

    /// The draft of everything that was taken. Throws the first failure when nothing stands and something failed.
    GeneratedNotes finish(std::string model, Date createdAt) &&;

private:
    std::vector<NoteSource> m_sources;
    IndexedSources m_index;
    NoteGrounding::Encoded m_encoded;
    std::vector<NoteItem> m_items;
    std::unordered_set<std::string> m_ids;
    std::optional<NotesFailure> m_firstFailure;
    std::int64_t m_dropped = 0;
};

} // namespace varnet
