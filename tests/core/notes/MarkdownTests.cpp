#include "MeetingCore/notes/NoteGrounding.h"

#include <gtest/gtest.h>

using namespace varnet;

TEST(Markdown, HoldsEverythingInOrder) {
    Meeting meeting;
    meeting.title = "Launch";
    meeting.createdAt = Date::fromUnix(1772721000);
    EXPECT_EQ(meeting.markdown(), "# Launch\n\n2026-03-05T14:30:00Z\n\n## Notes\n\n\n\n## Transcript\n\n\n");

    meeting.notes = "My notes";
    meeting.speakerNames.emplace()["Speaker 1"] = "Ana";
    const auto turn = [](double start, const std::string& speaker, const std::string& text) -> TranscriptTurn {
        return {.start = start, .end = start, .speaker = speaker, .originalText = text, .editedText = {}};
    };
    meeting.turns = {turn(-1, "Speaker 1", "I'll send the deck by Friday."), turn(3725.9, "Speaker 2", "We ship.")};
    meeting.source = MeetingSource{"eventkit", "Home", "C1", "E1", Date::fromUnix(0), {}, {}, {}};
    meeting.importedContent = "Agenda";
    GeneratedNotes draft;
    draft.model = "small model";
    draft.createdAt = Date::fromUnix(1772721061.5);
    draft.droppedItems = 1;
    draft.items = {{NoteItem::Kind::action, "Send the deck", "Ana", "by Friday", {{"S1", "I'll send"}, {"S9", "gone"}}},
                   {NoteItem::Kind::summary, "Shipping", {}, {}, {{"S2", "We ship."}}}};
    draft.sources = NoteGrounding::sources(meeting);
    draft.transcriptHash = NoteGrounding::hash(draft.sources);
    meeting.generatedNotes = draft;
    EXPECT_EQ(meeting.markdown(), R"(# Launch

2026-03-05T14:30:00Z

Source: eventkit · E1
Imported: 1970-01-01T00:00:00Z

## Notes

My notes

## Generated draft

Model: small model · 2026-03-05T14:31:01Z

Review the meaning and assignments; exact supporting quotes were checked.

Removed 1 point that didn't match the transcript.

### Summary

- Shipping
  - [S2 · 62:05] Speaker 2: “We ship.”

### Action items

- Send the deck — Owner: Ana — Due: by Friday
  - [S1 · 00:00] Ana: “I'll send”
  - [S9 · 00:00] Unknown: “gone”


## Transcript

[00:00] **Ana**: I'll send the deck by Friday.

[62:05] **Speaker 2**: We ship.

## Imported source content

Agenda
)");

    meeting.speakerNames->at("Speaker 1") = "Anna";
    EXPECT_NE(
        meeting.markdown().find("My notes\n\n**Draft is outdated: transcript or speaker names changed.**\n\n## Ge"),
        std::string::npos);
    meeting.turns[0].start = NAN; // cannot be hashed
    EXPECT_TRUE(meeting.generatedNotesAreStale());

    draft.items.clear();
    draft.droppedItems = 2;
    EXPECT_TRUE(draft.markdown().ends_with(
        "\nRemoved 2 points that didn't match the transcript.\n\nNo supported summary items were generated.\n"));
    draft.droppedItems = 0;
    EXPECT_EQ(draft.markdown().find("Removed"), std::string::npos);
}
