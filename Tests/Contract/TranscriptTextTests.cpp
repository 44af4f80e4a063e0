#include "CorvaneContract/Transcripts/TranscriptText.h"

#include <gtest/gtest.h>

using namespace corvane;

TEST(TranscriptText, TimestampsAreRoundedToMillisecondsBeforeTheyAreCut) {
    EXPECT_EQ(timestampSRT(3725.0042), QStringLiteral("01:02:05,004"));
    EXPECT_EQ(timestampPlain(59.9996), QStringLiteral("00:01:00"));
    EXPECT_EQ(timestampPlain(59.9994), QStringLiteral("00:00:59"));
    EXPECT_EQ(timestampSRT(0.0005), QStringLiteral("00:00:00,001"));
    EXPECT_EQ(timestampSRT(360000.0), QStringLiteral("100:00:00,000"));
}
