#include "Support/PrintQt.h"

#include "CorvaneCtl/CtlError.h"
#include "CorvaneCtl/Text.h"

#include <gmock/gmock.h>

#include <clocale>
#include <limits>

namespace corvane::ctl {
namespace {

class Text : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }
};

TEST_F(Text, ControlCharactersAndReversedTextAreShown) {
    const QString hostile = u"a\x1b[2J\n\t\r\x7f\u009b\u202e\u2028é"_s;
    EXPECT_EQ(visibleText(hostile), u"a\\x1b[2J\\n\\t\\r\\x7f\\u009b\\u202e\\u2028é"_s);
    EXPECT_EQ(visibleText("a\n\tb\x1b", LineBreaks::kept), u"a\n\tb\\x1b"_s);
}

TEST_F(Text, ColumnsLineUpByWidthNotByLength) {
    EXPECT_EQ(tableText({{"ID", "TITLE"}, {u"会议"_s, "x"}, {u"e\u0301"_s, ""}}), u"ID    TITLE\n会议  x\ne\u0301\n"_s);
}

TEST_F(Text, ProgressFitsTheTerminal) {
    EXPECT_EQ(progressText(0.25, 72.9, "Listening\n", 80), u"[#####---------------]  25 %  1:12  Listening\\n"_s);
    EXPECT_EQ(progressText(0.999, std::nullopt, {}, 80), u"[###################-]  99 %"_s);
    // A character of two columns that would stand half outside is left out.
    const QString cut = progressText(1, 5, u"会议会议会议会议"_s, 40);
    EXPECT_EQ(displayWidth(cut), 39);
    EXPECT_TRUE(cut.endsWith(QChar(0x2026)));
    EXPECT_EQ(progressText(std::numeric_limits<double>::quiet_NaN(), std::nullopt, {}, 80).right(4), u" 0 %"_s);
    EXPECT_TRUE(progressText(7e300, std::numeric_limits<double>::infinity(), {}, 80).endsWith("] 100 %  ?"));
}

TEST_F(Text, DurationsAndAges) {
    EXPECT_EQ(durationText(7.9), u"0:07"_s);
    EXPECT_EQ(durationText(3723), u"1:02:03"_s);
    EXPECT_EQ(durationText(-1), u"?"_s);
    EXPECT_EQ(ageText(119), u"119 s"_s);
    EXPECT_EQ(ageText(7199), u"119 min"_s);
    EXPECT_EQ(ageText(86400 * 2), u"2 d"_s);
    EXPECT_EQ(ageText(-5), u"0 s"_s) << "a file from the future";
}

TEST_F(Text, SpeakersOption) {
    for (const char* words : {"auto", "off", "3", "2-5", "4-4"})
        EXPECT_EQ(speakersText(withSpeakers({}, words)), QString(words));
    ProcessingSettings off;
    off.diarizationEnabled = false;
    EXPECT_TRUE(withSpeakers(off, "2").diarizationEnabled);
    const ProcessingSettings range = withSpeakers({}, "2-5");
    EXPECT_EQ(range.speakerCountMode, speakerCountMode::range);
    EXPECT_EQ(range.minSpeakerCount, 2);
    EXPECT_EQ(range.maxSpeakerCount, 5);
    for (const char* wrong :
         {"", "0", "-1", "5-2", "2-", "-", "x", "1.5", "0-3", "1001", "99999999999999999999", "2 - 5"})
        EXPECT_THROW((void)withSpeakers({}, wrong), UsageError) << wrong;
}

} // namespace
} // namespace corvane::ctl
