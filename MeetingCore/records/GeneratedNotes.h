#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/base/Uuid.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnet {

/// One span of transcript that was offered to the notes model.
struct NoteSource {
    std::string id; ///< "S1", "S2", ... by position
    Uuid turnID;
    double start = 0;    ///< seconds
    double end = 0;      ///< seconds
    std::string speaker; ///< display name
    std::string text;

    bool operator==(const NoteSource&) const = default;
};

/// One quote: words copied from the source with that id.
struct NoteEvidence {
    std::string source;
    std::string quote;

    bool operator==(const NoteEvidence&) const = default;
};

/// One point of a draft, with the quotes that carry it.
struct NoteItem {
    enum class Kind { summary, decision, action };
    /// The stored texts of the kinds, in their order.
    static constexpr std::array<std::string_view, 3> kindNames{"summary", "decision", "action"};

    Kind kind = Kind::summary;
    std::string text;
    std::optional<std::string> owner; ///< who is to do it
    std::optional<std::string> due;   ///< the spoken deadline, unresolved
    std::vector<NoteEvidence> evidence;

    /// Kind, text, owner and due joined by "|". Two points with one id are one point.
    std::string id() const;

    bool operator==(const NoteItem&) const = default;
};

/// What the notes model answers: the points that it proposes.
struct NoteResponse {
    std::vector<NoteItem> items;

    /// Strict: a key or kind that is missing or of another type throws JsonFailure, as does anything that is not JSON.
    /// Any thread.
    static NoteResponse decode(std::string_view json);

    bool operator==(const NoteResponse&) const = default;
};

/// A draft as stored with its meeting. It carries its own sources, so that its quotes stay readable after the
/// transcript has changed.
struct GeneratedNotes {
    std::vector<NoteItem> items; ///< in the order of acceptance
    std::vector<NoteSource> sources;
    std::string transcriptHash; ///< SHA-256 of the sources, lower-case hexadecimal
    std::string model;
    Date createdAt;
    std::int64_t chunks = 0; ///< how many groups of sources were sent
    std::string promptVersion = "grounded-notes-v7-repaired-quotes";
    std::optional<std::int64_t> droppedItems; ///< how many points failed validation

    /// The draft as a Markdown text, each point with its quotes.
    std::string markdown() const;

    bool operator==(const GeneratedNotes&) const = default;
};

} // namespace varnet
