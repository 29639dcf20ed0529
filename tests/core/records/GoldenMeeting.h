#pragma once

namespace varnet::test {

/// A record with nearly every field, as it must stand in the file.
inline constexpr const char* goldenDocument = R"({
  "attendees": [],
  "audioFilename": "meeting.wav",
  "createdAt": 794413800.25,
  "generatedNotes": {
    "chunks": 1,
    "createdAt": -0.5,
    "droppedItems": 0,
    "items": [
      {
        "due": "by Friday",
        "evidence": [
          {
            "quote": "Hello there.",
            "source": "S1"
          }
        ],
        "kind": "action",
        "owner": "Ana",
        "text": "Send the deck"
      }
    ],
    "model": "local",
    "promptVersion": "grounded-notes-v7-repaired-quotes",
    "sources": [
      {
        "end": 1.1,
        "id": "S1",
        "speaker": "Ana",
        "start": 0,
        "text": "Hello there.",
        "turnID": "00000000-0000-4000-8000-000000000001"
      }
    ],
    "transcriptHash": "ab"
  },
  "id": "1B4E28BA-2FA1-41D2-883F-2A5C8F3D9E11",
  "importedContent": "Agenda",
  "notes": "line\n\ttab \"quoted\" back\\slash /",
  "source": {
    "accountID": "Work",
    "cancelled": true,
    "containerID": "cal",
    "importedAt": 1,
    "provider": "eventkit",
    "recordID": "event",
    "scheduledStart": "2026-03-05T14:30"
  },
  "speakerNames": {
    "Speaker 1": "Ana",
    "Speaker 2": "Ben"
  },
  "status": "Ready",
  "title": "Weekly sync · “Q3”",
  "turns": [
    {
      "end": 1.1,
      "id": "00000000-0000-4000-8000-000000000001",
      "originalText": "Hello there.",
      "speaker": "Speaker 1",
      "start": 0
    },
    {
      "editedText": "",
      "end": 1e-07,
      "id": "00000000-0000-4000-8000-000000000002",
      "originalText": "um",
      "speaker": "Unassigned",
      "start": 3725.9
    }
  ]
}
)";

} // namespace varnet::test
