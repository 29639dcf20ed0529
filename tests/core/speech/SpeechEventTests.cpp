#include "MeetingCore/base/Json.h"
#include "MeetingCore/speech/SpeechEvent.h"

#include <gtest/gtest.h>

using namespace varnet;

TEST(SpeechEvent, ReadsAMessageWithWords) {
    const SpeechEvent event = SpeechEvent::decode(
        R"({"type":"x.completed","item":{"unknown":[1]},"transcript":"Hi you","audio_processed":2,)"
        R"("words":[{"word":"Hi","start":0.5,"end":0.75,"speaker":1},{"word":"you","start":1,"end":2,"speaker":null},)"
        R"({"word":"","start":2,"end":2}]})");
    EXPECT_EQ(event.type, "x.completed");
    EXPECT_EQ(event.transcript, "Hi you");
    EXPECT_EQ(event.audio_processed, 2);
    EXPECT_FALSE(event.delta || event.error);
    EXPECT_EQ(event.words, (std::vector<TranscriptWord>{{"Hi", 0.5, 0.75, 1}, {"you", 1, 2, {}}, {"", 2, 2, {}}}));
}

TEST(SpeechEvent, RefusesWhatMustNotReachARecord) {
    for (const char* message :
         {R"({"delta":"x"})", R"({"type":"t","delta":1})", R"({"type":"t","error":"busy"})",
          R"({"type":"t","error":{}})", R"({"type":"t","words":[{"word":"a","start":0}]})",
          R"({"type":"t","words":[{"word":"a","start":0,"end":1e300}]})",
          R"({"type":"t","words":[{"word":"a","start":-0.1,"end":1}]})",
          R"({"type":"t","words":[{"word":"a","start":0,"end":1,"speaker":1.5}]})",
          R"({"type":"t","words":[{"word":"a","start":0,"end":1,"speaker":9223372036854775808}]})",
          R"({"type":"t","audio_processed":-1})", R"({"type":"t","audio_processed":1000000001})"})
        EXPECT_THROW(SpeechEvent::decode(message), JsonFailure) << message;
    EXPECT_EQ(SpeechEvent::decode(R"({"type":"t","audio_processed":1000000000})").audio_processed, 1e9);
}
