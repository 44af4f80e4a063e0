#include "Support/PrintQt.h"

#include "CorvaneContract/Transcripts/TranscriptText.h"

#include <gtest/gtest.h>

#include <limits>

using namespace corvane;

namespace {

using Segments = std::vector<TranscriptSegment>;

TranscriptSegment said(double start, double end, const QString& text, const QString& speaker) {
    return {.start = start, .end = end, .text = text, .speaker = speaker};
}

} // namespace

TEST(TranscriptText, TimestampsAreRoundedToMillisecondsBeforeTheyAreCut) {
    EXPECT_EQ(timestampSRT(3725.0042), u"01:02:05,004"_s);
    EXPECT_EQ(timestampPlain(59.9996), u"00:01:00"_s);
    EXPECT_EQ(timestampPlain(59.9994), u"00:00:59"_s);
    EXPECT_EQ(timestampSRT(0.0005), u"00:00:00,001"_s);
    EXPECT_EQ(timestampSRT(360000.0), u"100:00:00,000"_s);
}

TEST(TranscriptTextDeathTest, ATimeThatCannotBePrintedEndsTheProgram) {
    for (const double time :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(), 1e17}) {
        EXPECT_DEATH((void)timestampSRT(time), "cannot be printed");
        EXPECT_DEATH((void)timestampPlain(time), "cannot be printed");
    }
}

TEST(TranscriptText, GroupsTurnsByTheSpeakerAlone) {
    const Segments segments{said(0, 1, " a  b\n", "A"), said(100, 101, "c", "A"), said(101, 102, " \t\n", "B"),
                            said(102, 103, "d", "A"),   said(103, 104, "e", "B"), said(2, 3, "f", "A")};
    const std::vector<TranscriptSegmentGroup> expected{
        {0, 103, u"A"_s, u"a  b c d"_s}, {103, 104, u"B"_s, u"e"_s}, {2, 3, u"A"_s, u"f"_s}};
    EXPECT_EQ(groupedSegments(segments), expected);
}

TEST(TranscriptText, WritesTheThreeFormsToTheByte) {
    const Segments segments{said(62.5, 64, "Hi <b>\nthere", "S0"), said(64, 3725.0042, "Yes", "S1")};
    const SpeakerNames names{{u"S0"_s, u"Ada "_s}, {u"S1"_s, u" "_s}};
    EXPECT_EQ(transcriptText(segments, names), u"[00:01:02.500] Ada : Hi <b>\nthere\n[00:01:04.000] S1: Yes\n"_s);
    EXPECT_EQ(transcriptSRT(segments, names), u"1\n00:01:02,500 --> 00:01:04,000\nAda : Hi <b>\nthere\n\n"
                                              "2\n00:01:04,000 --> 01:02:05,004\nS1: Yes\n"_s);
    EXPECT_EQ(transcriptVTT(segments, names), u"WEBVTT\n\n00:01:02.500 --> 00:01:04.000\nAda : Hi <b>\nthere\n\n"
                                              "00:01:04.000 --> 01:02:05.004\nS1: Yes\n"_s);
}

TEST(TranscriptText, AnEmptyAndABlankTranscriptDiffer) {
    const Segments blank{said(0, 1, "  ", "A")};
    EXPECT_EQ(transcriptText({}, {}), QString());
    EXPECT_EQ(transcriptSRT({}, {}), QString());
    EXPECT_EQ(transcriptVTT({}, {}), u"WEBVTT\n\n"_s);
    EXPECT_EQ(transcriptText(blank, {}), u"\n"_s);
    EXPECT_EQ(transcriptSRT(blank, {}), u"\n"_s);
    EXPECT_EQ(transcriptVTT(blank, {}), u"WEBVTT\n\n\n"_s);
}
