#include "MeetingCore/notes/IndexedSources.h"

#include "MeetingCore/base/Assert.h"

namespace varnet {

IndexedSources::IndexedSources(std::span<const NoteSource> sources) : m_sources(sources) {
    m_positions.reserve(sources.size());
    for (const NoteSource& source : sources) {
        const bool isNew = m_positions.emplace(source.id, m_positions.size()).second;
        VARNET_ASSERT(isNew);
    }
}

std::optional<std::size_t> IndexedSources::position(std::string_view id) const {
    const auto found = m_positions.find(id);
    if (found == m_positions.end())
        return {};
    return found->second;
}

const NoteSource* IndexedSources::find(std::string_view id) const {
    const auto at = position(id);
    return at ? &m_sources[*at] : nullptr;
}

} // namespace varnet
