#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/store/MeetingPresentation.h"
#include "tests/support/StoreFixture.h"

namespace varnet::test {
namespace {

using Presentation = StoreFixture;

TEST_F(Presentation, TheBadgeIsDecidedByTheFirstRuleThatHolds) {
    const StatusBadge notesReady{"Notes ready", BadgeColor::ok, false};
    const struct {
        const char* status;
        bool notes, turns, audio;
        StatusBadge badge;
    } rows[] = {
        {"Transcribing and assigning speakers", true, true, true, {"Working", BadgeColor::amber, true}},
        {"Recording did not start", true, true, true, {"No audio saved", BadgeColor::rec, false}},
        {"Capture incomplete · check saved audio", true, true, true, {"Needs attention", BadgeColor::rec, true}},
        {"Audio saved · retry transcription", false, false, true, {"Needs transcript", BadgeColor::amber, true}},
        {"Audio saved · retry transcription", false, true, true, {"Transcript incomplete", BadgeColor::amber, true}},
        {"Audio saved · retry transcription", true, true, true, notesReady},
        {"Scheduled · ready to record", false, true, false, {"Transcript only", BadgeColor::faint, true}},
        {"Scheduled · ready to record", false, false, true, {"Scheduled", BadgeColor::faint, true}},
        {"Audio saved · live transcript", false, false, true, {"Audio only", BadgeColor::faint, true}},
        {"Ready", false, false, false, {"Empty", BadgeColor::faint, true}},
    };
    for (const auto& row : rows) {
        Meeting meeting;
        meeting.status = row.status;
        if (row.notes)
            meeting.generatedNotes.emplace();
        meeting.turns.resize(row.turns ? 1 : 0);
        if (row.audio)
            meeting.audioFilename = "meeting.wav";
        EXPECT_EQ(MeetingPresentation::badge(meeting, store()), row.badge) << row.status;
    }
}

TEST_F(Presentation, AShortfallIsMoreThanFiveSecondsOfAudioWithoutWords) {
    Meeting meeting = Meeting::make("Recorded");
    meeting.audioFilename = "meeting.wav";
    meeting.turns.resize(1);
    repository.save(meeting);
    DurableWAV(repository.directory(meeting.id) / "meeting.wav").append(std::vector<std::byte>(65 * 32'000));
    meeting.status = MeetingStatus::savedRetryTranscription;
    meeting.turns[0].end = 60;
    EXPECT_EQ(MeetingPresentation::transcriptShortfall(meeting, store()), std::nullopt);
    meeting.turns[0].end = 59.5;
    EXPECT_EQ(MeetingPresentation::transcriptShortfall(meeting, store()), (TranscriptShortfall{59.5, 65}));
    meeting.status = MeetingStatus::interrupted;
    EXPECT_EQ(MeetingPresentation::transcriptShortfall(meeting, store()), std::nullopt);
}

} // namespace
} // namespace varnet::test
