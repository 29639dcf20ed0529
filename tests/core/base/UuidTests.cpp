#include "MeetingCore/base/Uuid.h"

#include <gtest/gtest.h>

using varnet::Uuid;

TEST(Uuid, IsReadInEitherCaseAndInItsCanonicalFormOnly) {
    EXPECT_EQ(Uuid::parse("1b4e28ba-2fa1-41d2-883f-2a5c8f3d9e11")->text(), "1B4E28BA-2FA1-41D2-883F-2A5C8F3D9E11");
    for (const char* text : {"", "1B4E28BA2FA141D2883F2A5C8F3D9E11", "1B4E28BA-2FA1-41D2-883F-2A5C8F3D9E111",
                             "1B4E28BA-2FA1-41D2-883F-2A5C8F3D9E1G", "{1B4E28BA-2FA1-41D2-883F-2A5C8F3D9E"})
        EXPECT_FALSE(Uuid::parse(text)) << text;
}

TEST(Uuid, RandomIsVersion4AndDiffers) {
    const std::string text = Uuid::random().text();
    EXPECT_EQ(text[14], '4');
    EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos);
    EXPECT_NE(Uuid::random(), Uuid::random());
}
