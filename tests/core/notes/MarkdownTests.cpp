#include "MeetingCore/notes/NoteGrounding.h"
#include "MeetingCore/records/MeetingJson.h"
#include "tests/core/records/GoldenMeeting.h"

#include <gtest/gtest.h>

using namespace varnet;

TEST(Markdown, HoldsEverythingInOrder) {
    Meeting meeting = decodeMeeting(test::goldenDocument);
    meeting.turns.at(1).editedText = "We ship.";
    GeneratedNotes& draft = *meeting.generatedNotes;
    draft.items.push_back({NoteItem::Kind::summary, "Shipping", {}, {}, {{"S9", "gone"}}});
    draft.transcriptHash = NoteGrounding::hash(NoteGrounding::sources(meeting));
    EXPECT_EQ(meeting.markdown(), R"(# Weekly sync · “Q3”

2026-03-05T14:30:00Z

Source: eventkit · event
Imported: 2001-01-01T00:00:01Z

## Notes

line
	tab "quoted" back\slash /

## Generated draft

Model: local · 2000-12-31T23:59:59Z

Review the meaning and assignments; exact supporting quotes were checked.

### Summary

- Shipping
  - [S9 · 00:00] Unknown: “gone”

### Action items

- Send the deck — Owner: Ana — Due: by Friday
  - [S1 · 00:00] Ana: “Hello there.”


## Transcript

[00:00] **Ana**: Hello there.

[62:05] **Unassigned**: We ship.

## Imported source content

Agenda
)");

    meeting.speakerNames->at("Speaker 1") = "Anna";
    EXPECT_NE(meeting.markdown().find("\n\n**Draft is outdated: transcript or speaker names changed.**\n\n## Ge"),
              std::string::npos);
    meeting.turns[0].start = NAN; // cannot be hashed
    EXPECT_TRUE(meeting.generatedNotesAreStale());

    draft.items.clear();
    draft.droppedItems = 2;
    EXPECT_TRUE(draft.markdown().ends_with(
        "\nRemoved 2 points that didn't match the transcript.\n\nNo supported summary items were generated.\n"));
}
