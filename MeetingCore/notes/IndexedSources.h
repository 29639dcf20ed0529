#pragma once

#include "MeetingCore/records/GeneratedNotes.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>

namespace varnet {

/// Sources that are looked up by their ids, made once for many points. It refers to them: they outlive it and stay
/// where they are. Any thread.
class IndexedSources {
public:
    /// The ids differ, or the program ends.
    explicit IndexedSources(std::span<const NoteSource> sources);

    std::span<const NoteSource> all() const { return m_sources; }
    std::optional<std::size_t> position(std::string_view id) const;
    /// Null for an id that no source has.
    const NoteSource* find(std::string_view id) const;

private:
    std::span<const NoteSource> m_sources;
    std::unordered_map<std::string_view, std::size_t> m_positions;
};

} // namespace varnet
