#include "Support/PrintQt.h"

#include "CorvaneContract/Transcripts/TranscriptText.h"

#include <gtest/gtest.h>

#include <limits>

using namespace corvane;

namespace {

using Segments = std::vector<TranscriptSegment>;

TranscriptSegment said(double start, double end, const char* text, const char* speaker) {
    return {.start = start, .end = end, .text = QString::fromUtf8(text), .speaker = QString::fromUtf8(speaker)};
}

} // namespace

TEST(TranscriptText, TimestampsAreRoundedToMillisecondsBeforeTheyAreCut) {
    EXPECT_EQ(timestampSRT(3725.0042), QStringLiteral("01:02:05,004"));
    EXPECT_EQ(timestampPlain(59.9996), QStringLiteral("00:01:00"));
    EXPECT_EQ(timestampPlain(59.9994), QStringLiteral("00:00:59"));
    EXPECT_EQ(timestampSRT(0.0005), QStringLiteral("00:00:00,001"));
    EXPECT_EQ(timestampSRT(360000.0), QStringLiteral("100:00:00,000"));
}

TEST(TranscriptTextDeathTest, ATimeThatCannotBePrintedEndsTheProgram) {
    for (const double time :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(), 1e17}) {
        EXPECT_DEATH(static_cast<void>(timestampSRT(time)), "cannot be printed");
        EXPECT_DEATH(static_cast<void>(timestampPlain(time)), "cannot be printed");
    }
}

TEST(TranscriptText, GroupsTurnsByTheSpeakerAlone) {
    const Segments segments{said(0, 1, " a  b\n", "A"), said(100, 101, "c", "A"), said(101, 102, " \t\n", "B"),
                            said(102, 103, "d", "A"),   said(103, 104, "e", "B"), said(2, 3, "f", "A")};
    const std::vector<TranscriptSegmentGroup> expected{{0, 103, QStringLiteral("A"), QStringLiteral("a  b c d")},
                                                       {103, 104, QStringLiteral("B"), QStringLiteral("e")},
                                                       {2, 3, QStringLiteral("A"), QStringLiteral("f")}};
    EXPECT_EQ(groupedSegments(segments), expected);
}

TEST(TranscriptText, WritesTheThreeFormsToTheByte) {
    const Segments segments{said(62.5, 64, "Hi <b>\nthere", "S0"), said(64, 3725.0042, "Yes", "S1")};
    const SpeakerNames names{{QStringLiteral("S0"), QStringLiteral("Ada ")},
                             {QStringLiteral("S1"), QStringLiteral(" ")}};
    EXPECT_EQ(transcriptText(segments, names),
              QStringLiteral("[00:01:02.500] Ada : Hi <b>\nthere\n[00:01:04.000] S1: Yes\n"));
    EXPECT_EQ(transcriptSRT(segments, names), QStringLiteral("1\n00:01:02,500 --> 00:01:04,000\nAda : Hi <b>\nthere\n\n"
                                                             "2\n00:01:04,000 --> 01:02:05,004\nS1: Yes\n"));
    EXPECT_EQ(transcriptVTT(segments, names),
              QStringLiteral("WEBVTT\n\n00:01:02.500 --> 00:01:04.000\nAda : Hi <b>\nthere\n\n"
                             "00:01:04.000 --> 01:02:05.004\nS1: Yes\n"));
}

TEST(TranscriptText, AnEmptyAndABlankTranscriptDiffer) {
    const Segments blank{said(0, 1, "  ", "A")};
    EXPECT_EQ(transcriptText({}, {}), QString());
    EXPECT_EQ(transcriptSRT({}, {}), QString());
    EXPECT_EQ(transcriptVTT({}, {}), QStringLiteral("WEBVTT\n\n"));
    EXPECT_EQ(transcriptText(blank, {}), QStringLiteral("\n"));
    EXPECT_EQ(transcriptSRT(blank, {}), QStringLiteral("\n"));
    EXPECT_EQ(transcriptVTT(blank, {}), QStringLiteral("WEBVTT\n\n\n"));
}
