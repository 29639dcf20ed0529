#pragma once

#include "MeetingCore/base/JsonFields.h"
#include "MeetingCore/records/Meeting.h"

/// The tables by which a meeting and the records inside it are read and written.
namespace varnet {

template <>
struct JsonNames<NoteItem::Kind> {
    static constexpr const auto& names = NoteItem::kindNames;
};

template <>
struct JsonRecord<NoteEvidence> {
    static constexpr std::tuple fields{JsonField{"quote", &NoteEvidence::quote},
                                       JsonField{"source", &NoteEvidence::source}};
};

template <>
struct JsonRecord<NoteItem> {
    static constexpr std::tuple fields{JsonField{"due", &NoteItem::due}, JsonField{"evidence", &NoteItem::evidence},
                                       JsonField{"kind", &NoteItem::kind}, JsonField{"owner", &NoteItem::owner},
                                       JsonField{"text", &NoteItem::text}};
};

template <>
struct JsonRecord<NoteResponse> {
    static constexpr std::tuple fields{JsonField{"items", &NoteResponse::items}};
};

template <>
struct JsonRecord<NoteSource> {
    static constexpr std::tuple fields{
        JsonField{"end", &NoteSource::end},         JsonField{"id", &NoteSource::id},
        JsonField{"speaker", &NoteSource::speaker}, JsonField{"start", &NoteSource::start},
        JsonField{"text", &NoteSource::text},       JsonField{"turnID", &NoteSource::turnID}};
};

template <>
struct JsonRecord<GeneratedNotes> {
    static constexpr std::tuple fields{JsonField{"chunks", &GeneratedNotes::chunks},
                                       JsonField{"createdAt", &GeneratedNotes::createdAt},
                                       JsonField{"droppedItems", &GeneratedNotes::droppedItems},
                                       JsonField{"items", &GeneratedNotes::items},
                                       JsonField{"model", &GeneratedNotes::model},
                                       JsonField{"promptVersion", &GeneratedNotes::promptVersion},
                                       JsonField{"sources", &GeneratedNotes::sources},
                                       JsonField{"transcriptHash", &GeneratedNotes::transcriptHash}};
};

template <>
struct JsonRecord<MeetingSource> {
    static constexpr std::tuple fields{JsonField{"accountID", &MeetingSource::accountID},
                                       JsonField{"cancelled", &MeetingSource::cancelled},
                                       JsonField{"containerID", &MeetingSource::containerID},
                                       JsonField{"importedAt", &MeetingSource::importedAt},
                                       JsonField{"provider", &MeetingSource::provider},
                                       JsonField{"recordID", &MeetingSource::recordID},
                                       JsonField{"scheduledEnd", &MeetingSource::scheduledEnd},
                                       JsonField{"scheduledStart", &MeetingSource::scheduledStart},
                                       JsonField{"sourceURL", &MeetingSource::sourceURL}};
};

template <>
struct JsonRecord<TranscriptTurn> {
    static constexpr std::tuple fields{JsonField{"editedText", &TranscriptTurn::editedText},
                                       JsonField{"end", &TranscriptTurn::end},
                                       JsonField{"id", &TranscriptTurn::id},
                                       JsonField{"originalText", &TranscriptTurn::originalText},
                                       JsonField{"speaker", &TranscriptTurn::speaker},
                                       JsonField{"start", &TranscriptTurn::start}};

    /// Without the fresh id, which would be a system call for each turn of a library.
    static TranscriptTurn blank() { return {.id = {}, .speaker = {}, .originalText = {}, .editedText = {}}; }
};

template <>
struct JsonRecord<Meeting> {
    static constexpr std::tuple beforeTurns{JsonField{"attendees", &Meeting::attendees},
                                            JsonField{"audioFilename", &Meeting::audioFilename},
                                            JsonField{"createdAt", &Meeting::createdAt},
                                            JsonField{"generatedNotes", &Meeting::generatedNotes},
                                            JsonField{"id", &Meeting::id},
                                            JsonField{"importedContent", &Meeting::importedContent},
                                            JsonField{"notes", &Meeting::notes},
                                            JsonField{"source", &Meeting::source},
                                            JsonField{"speakerNames", &Meeting::speakerNames},
                                            JsonField{"status", &Meeting::status},
                                            JsonField{"title", &Meeting::title}};
    static constexpr JsonField turns{"turns", &Meeting::turns};
    static constexpr auto fields = std::tuple_cat(beforeTurns, std::tuple{turns});

    /// Without a fresh id, too.
    static Meeting blank() {
        return {.id = {},
                .title = {},
                .createdAt = {},
                .turns = {},
                .notes = {},
                .audioFilename = {},
                .speakerNames = {},
                .source = {},
                .importedContent = {},
                .generatedNotes = {},
                .attendees = {}};
    }
};

} // namespace varnet
