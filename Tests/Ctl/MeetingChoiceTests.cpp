#include "Support/PrintQt.h"

#include "CorvaneCtl/CtlError.h"
#include "CorvaneCtl/MeetingChoice.h"

#include <gmock/gmock.h>

namespace corvane::ctl {
namespace {

using testing::ElementsAre;

MeetingListItem meeting(const QString& id, const QString& title) {
    MeetingListItem item;
    item.id = id;
    item.title = title;
    return item;
}

QString chosen(const std::vector<MeetingListItem>& meetings, const QString& words) {
    return chooseMeeting(meetings, words).id;
}

QString refusal(const std::vector<MeetingListItem>& meetings, const QString& words) {
    try {
        (void)chooseMeeting(meetings, words);
    } catch (const CtlError& error) {
        EXPECT_EQ(error.status(), ExitStatus::noSuchMeeting);
        return error.text();
    }
    return {};
}

const std::vector<MeetingListItem> library{
    meeting("AAAA0000-1111", "Weekly"),
    meeting("AAAA0000-2222", "weekly"),
    meeting("B", "AAAA0000-1"),
    meeting("BB", "Weekly talk"),
};

TEST(MeetingChoice, TakesIdsBeginningsAndTitles) {
    EXPECT_EQ(chosen(library, "latest"), u"AAAA0000-1111"_s);
    EXPECT_EQ(chosen(library, "aaaa0000-2"), u"AAAA0000-2222"_s);
    EXPECT_EQ(chosen(library, "Weekly"), u"AAAA0000-1111"_s) << "titles count exactly";
    EXPECT_EQ(chosen(library, "b"), u"B"_s) << "a whole id wins over those that begin with it";
}

TEST(MeetingChoice, NamesTheCandidatesWhereSeveralFit) {
    const QString ids = refusal(library, "aaaa");
    EXPECT_TRUE(ids.contains("AAAA0000-1") && ids.contains("AAAA0000-2") && !ids.contains("talk")) << ids.toStdString();
    // Deleting the wrong one of two would be too bad to guess.
    EXPECT_FALSE(refusal(library, "AAAA0000-1").isEmpty()) << "a title of one, the beginning of another's id";
    EXPECT_FALSE(refusal(library, "talk").isEmpty());
    EXPECT_FALSE(refusal(library, "").isEmpty());
    EXPECT_FALSE(refusal({}, "latest").isEmpty());
}

TEST(MeetingChoice, ShortIdsFitOneMeetingEach) {
    EXPECT_THAT(shortIDs(library), ElementsAre("AAAA0000-1", "AAAA0000-2", "B", "BB"));
    EXPECT_THAT(shortIDs({meeting("abcdefghijkl", ""), meeting("ABCDEFGHIJkz", ""), meeting("zyxwvutsrq", "")}),
                ElementsAre("abcdefghijkl", "ABCDEFGHIJkz", "zyxwvuts"));
    // Never half a character.
    const QString music = u"1234567\U0001D11E-rest"_s;
    EXPECT_THAT(shortIDs({meeting(music, "")}), ElementsAre(music.left(9)));
}

} // namespace
} // namespace corvane::ctl
