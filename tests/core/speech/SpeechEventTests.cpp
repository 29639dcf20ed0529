#include "MeetingCore/base/Json.h"
#include "MeetingCore/speech/SpeechEvent.h"

#include <gtest/gtest.h>

using namespace varnet;

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
