// What the facts about the application in front mean, and the words that follow from it.
#include "Support/Fakes/FakeFrontmostApplicationReader.h"
#include "Support/PrintQt.h"

#include "CorvaneCore/Calls/ActiveCallDetector.h"

#include <QLocale>
#include <QScopeGuard>

#include <gtest/gtest.h>

namespace corvane {
namespace {

struct Case {
    const char* name;
    FrontmostApplication front;
    // "provider|title|key", "-" for no title, "" for no call
    QString expected;
};

FrontmostApplication browser(const QString& url, const QString& title = {}) {
    return inFront(u"firefox"_s, u"Firefox"_s, u"Team meeting"_s, BrowserTab{.url = url, .title = title});
}

TEST(ActiveCallDetectorTest, JudgesByTheApplicationInFront) {
    const QString teams = u"com.microsoft.teams2"_s;
    const QString slack = u"com.tinyspeck.slackmacgap"_s;
    const Case cases[] = {
        {"Zoom by name alone", inFront({}, u"My ZOOM thing"_s), u"Zoom|-|app:zoom:meeting"_s},
        {"Zoom in its own words", inFront(u"us.zoom.xos"_s, u"x"_s, u"Zoom Meeting"_s), u"Zoom|-|app:zoom:meeting"_s},
        {"Zoom, every occurrence", inFront(u"us.zoom.xos"_s, u"x"_s, u"\u00a0Zoom MeetingAZoom Meeting\n"_s),
         u"Zoom|A|app:zoom:A"_s},
        {"Zoom's letter case", inFront(u"us.zoom.xos"_s, u"x"_s, u"zoom meeting"_s),
         u"Zoom|zoom meeting|app:zoom:zoom meeting"_s},
        {"Teams, chatting", inFront(teams, u"x"_s, u"Chat | Microsoft Teams"_s), {}},
        {"Teams, French", inFront(teams, u"x"_s, u"Appel projet | Microsoft Teams"_s),
         u"Microsoft Teams|Appel projet ||app:teams:Appel projet |"_s},
        {"Teams, accents as letters", inFront(u"com.microsoft.teams"_s, u"x"_s, u"RE\u0301UNION"_s),
         u"Microsoft Teams|RE\u0301UNION|app:teams:RE\u0301UNION"_s},
        {"Teams, untitled", inFront(teams, u"x"_s), {}},
        {"Teams is no browser",
         inFront({}, u"Teams"_s, u"Chat"_s, BrowserTab{.url = u"https://meet.google.com/"_s, .title = {}}),
         {}},
        {"Slack, chatting", inFront(slack, u"Slack"_s, u"Slack | general"_s), {}},
        {"Slack, huddling", inFront(slack, u"Slack"_s, u"Huddle: general"_s),
         u"Slack|Huddle: general|app:slack:Huddle: general"_s},
        {"Slack by name is not enough", inFront({}, u"Slack"_s, u"Huddle"_s), {}},
        {"Meet", browser(u"https://meet.google.com/abc"_s, u"Meet - abc - Google Meet"_s),
         u"Google Meet|Meet - abc|url:https://meet.google.com/abc"_s},
        {"Meet, address as it was", browser(u"HTTPS://MEET.GOOGLE.COM/ABC"_s),
         u"Google Meet|-|url:HTTPS://MEET.GOOGLE.COM/ABC"_s},
        {"below Meet", browser(u"https://x.meet.google.com/"_s), {}},
        {"below Zoom", browser(u"https://us02web.zoom.us/j/1"_s, u"Weekly - Zoom"_s),
         u"Zoom|Weekly|url:https://us02web.zoom.us/j/1"_s},
        {"beside Zoom", browser(u"https://notzoom.us/"_s), {}},
        {"Zoom as a user name", browser(u"https://zoom.us@example.org/"_s), {}},
        {"Zoom in a path", browser(u"https://example.org/zoom.us"_s), {}},
        {"Teams on the web", browser(u"https://teams.microsoft.com"_s, u"Weekly | Microsoft Teams"_s),
         u"Microsoft Teams|Weekly|url:https://teams.microsoft.com"_s},
        {"no host", browser(u"meet.google.com/abc"_s), {}},
        {"no address", browser(u"https://[meet"_s), {}},
        {"nothing special", inFront(u"org.gnome.Terminal"_s, u"Terminal"_s, u"meeting call huddle"_s), {}},
    };
    for (const Case& one : cases) {
        const auto call = ActiveCallDetector::detectCall(one.front);
        const QString found =
            call ? callProviderName(call->provider) + u'|' + call->title.value_or(u"-"_s) + u'|' + call->key
                 : QString();
        EXPECT_EQ(found, one.expected) << one.name;
        EXPECT_TRUE(!call || call->source == one.front.localizedName) << one.name;
    }
}

TEST(ActiveCallDetectorTest, NamesAreComparedAsTheUsersLanguageHasItsLetters) {
    const auto restore = qScopeGuard([before = QLocale()] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(u"tr_TR"_s));
    EXPECT_TRUE(ActiveCallDetector::detectCall(inFront({}, u"TEAMS"_s, u"meeting"_s)));
    EXPECT_TRUE(ActiveCallDetector::detectCall(inFront({}, u"Zoom"_s)));
}

TEST(DetectedCallTest, SaysWhatItIs) {
    const QDateTime now(QDate(2026, 3, 2), QTime(14, 5, 59));
    DetectedCall call{.provider = CallProvider::slack, .title = {}, .source = u"Safari"_s, .key = {}};
    EXPECT_EQ(call.subtitle(), u"Slack detected in Safari."_s);
    EXPECT_EQ(call.recordingTitle(now.toUTC()), u"Slack 2026-03-02 14:05"_s);
    call.title = u" Weekly "_s;
    EXPECT_EQ(call.subtitle(), u"Slack -  Weekly "_s);
    EXPECT_EQ(call.recordingTitle(now), u"Weekly 2026-03-02 14:05"_s);
    call = *ActiveCallDetector::detectCall(inFront(u"us.zoom.xos"_s, {}));
    EXPECT_EQ(call.subtitle(), u"Zoom detected in current app."_s);
}

} // namespace
} // namespace corvane
