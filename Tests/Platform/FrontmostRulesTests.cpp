#include "Support/PrintQt.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvanePlatform/Linux/Frontmost/AccessibleFrontWindow.h"
#include "CorvanePlatform/Linux/Frontmost/DesktopEntries.h"
#include "CorvanePlatform/Linux/Frontmost/KnownApplications.h"
#include "CorvanePlatform/Linux/Frontmost/SwayFrontWindow.h"
#include "CorvanePlatform/Linux/Frontmost/WindowPrivacy.h"

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace corvane;

TEST(KnownApplications, StandForTheDesktopsOwnNames) {
    struct Case {
        const char* instance;
        const char* applicationId;
        const char* identifier; // empty: unknown
        std::optional<Browser> browser;
        BrowserWindow kind = BrowserWindow::ordinary;
    };
    const Case cases[] = {
        {"zoom", "zoom", "us.zoom.xos", {}},
        {"", "us.zoom.Zoom", "us.zoom.xos", {}},
        {"", "zoomer", "", {}},
        {"teams-for-linux", "Teams-for-Linux", "com.microsoft.teams2", {}},
        {"", "com.slack.Slack", "com.tinyspeck.slackmacgap", {}},
        {"chromium (/home/x__y)", "Firefox", "", {}},
        {"chromium (/tmp/profile)", "Chromium", "com.google.Chrome", Browser::chromium},
        {"", "GOOGLE-CHROME-UNSTABLE", "com.google.Chrome.canary", Browser::chromeUnstable},
        {"", "microsoft-edge", "com.microsoft.edgemac", Browser::edge},
        {"", "com.brave.Browser", "com.brave.Browser", Browser::brave},
        {"crx_cifhbcnohmdccbgoicgdjpfamggdegmo", "Google-chrome", "com.microsoft.teams2", {}},
        {"crx__cifhbcnohmdccbgoicgdjpfamggdegmo", "Microsoft-edge", "com.microsoft.teams2", {}},
        {"", "msedge-_cifhbcnohmdccbgoicgdjpfamggdegmo-Default", "com.microsoft.teams2", {}},
        {"crx_kjgfgldnnfoeklkmfkjfagphfepbbdan", "Google-chrome", "com.google.Chrome", Browser::chrome,
         BrowserWindow::webApplication},
        {"", "chrome-kjgfgldnnfoeklkmfkjfagphfepbbdan-Default", "com.google.Chrome", Browser::chrome,
         BrowserWindow::webApplication},
        {"meet.google.com__abc", "Chromium", "com.google.Chrome", Browser::chromium, BrowserWindow::webApplication},
        {"", "firefox-esr", "", {}},
        {"", "", "", {}},
    };
    for (const Case& expected : cases) {
        const auto known = knownApplication({.applicationId = QString::fromUtf8(expected.applicationId),
                                             .instance = QString::fromUtf8(expected.instance),
                                             .title = {},
                                             .processIdentifier = {},
                                             .identity = {}});
        const std::string name = std::string(expected.instance) + ' ' + expected.applicationId;
        EXPECT_EQ(known ? known->identifier : QString(), QString::fromUtf8(expected.identifier)) << name;
        if (known) {
            EXPECT_EQ(known->browser, expected.browser) << name;
            EXPECT_EQ(known->browserWindow, expected.kind) << name;
        }
    }
}

// Titles as Chromium's own files of texts make them.
TEST(WindowPrivacy, IsToldInEveryLanguage) {
    const auto privacy = [](Browser browser, const char* title) {
        return windowPrivacy(browser, BrowserWindow::ordinary, QString::fromUtf8(title), std::nullopt);
    };
    for (const char* title :
         {"Meet - Chromium", "Meet – Chromium", "Meet: Chromium", "Meet -- Chromium", "„Meet“ – „Chromium“",
          "Meet - क्रोमियम", "\u200eMeet - Chromium", "Meet - Camera or microphone recording - Chromium",
          "Meet - Chromium - Anna", "On (Incognito) - Chromium", "Why Chromium (a talk) - Chromium", "Chromium"})
        EXPECT_EQ(privacy(Browser::chromium, title), WindowPrivacy::ordinary) << title;
    for (const char* title :
         {"Meet - Chromium (Incognito)", "Meet – Chromium (Navigation privée)",
          "Meet - Chromium（シークレット モード）", "„„Meet“ – „Chromium““ (Inkognito)", "Meet - Chromium（无痕）",
          "Meet - Chromium(ছদ্মবেশী)", "\u200fMeet - Chromium (גלישה בסתר)\u200f", "Meet - Chromium (Guest)",
          "Meet - Chromium privé", "Meet", "", "Chromium tips", "Meet - Google Chrome"})
        EXPECT_EQ(privacy(Browser::chromium, title), WindowPrivacy::doubtful) << title;
    EXPECT_EQ(privacy(Browser::edge, "Meet - Personal - Microsoft\u200b Edge"), WindowPrivacy::ordinary);
    EXPECT_EQ(privacy(Browser::edge, "Meet - [InPrivate] - Microsoft Edge"), WindowPrivacy::doubtful);
    EXPECT_EQ(privacy(Browser::brave, "Meet - Brave (Private)"), WindowPrivacy::doubtful);
    EXPECT_EQ(privacy(Browser::chrome, "Meet - Google Chrome Beta"), WindowPrivacy::ordinary);
}

TEST(WindowPrivacy, OfAWebApplicationComparesWithTheWindowsOwnTitle) {
    const auto privacy = [](const char* accessibleTitle, std::optional<QString> title) {
        return windowPrivacy(Browser::chromium, BrowserWindow::webApplication, QString::fromUtf8(accessibleTitle),
                             title);
    };
    EXPECT_EQ(privacy("Meet (2)", u"Meet (2)"_s), WindowPrivacy::ordinary);
    EXPECT_EQ(privacy("Meet - Audio playing", u"Meet"_s), WindowPrivacy::ordinary);
    EXPECT_EQ(privacy("Meet (Incognito)", u"Meet"_s), WindowPrivacy::doubtful);
    EXPECT_EQ(privacy("Meet (2)", std::nullopt), WindowPrivacy::doubtful);
}

TEST(SwayTree, LeadsToTheFocusedWindow) {
    const auto tree = [](const QByteArray& workspace) {
        return R"({"id":1,"focused":false,"focus":[3,2],"nodes":[{"id":2,"focused":false},
                  {"id":3,"focused":false,"focus":[4],"nodes":[)" +
               workspace + "]}]}";
    };
    const QByteArray windows = R"({"id":4,"focused":false,"focus":[7,6],
        "nodes":[{"id":6,"focused":false,"pid":60,"app_id":"foot","name":"shell"}],
        "floating_nodes":[{"id":7,"focused":true,"pid":70,"app_id":null,"name":"Zoom Meeting",
                           "window_properties":{"class":"zoom","instance":"inst"}}]})";
    const auto x11 = frontWindowOfSwayTree(tree(windows));
    ASSERT_EQ(x11.outcome, FrontWindowReading::Outcome::window);
    EXPECT_EQ(x11.window, (FrontWindow{.source = FrontWindowSource::sway,
                                       .applicationId = u"zoom"_s,
                                       .instance = u"inst"_s,
                                       .title = u"Zoom Meeting"_s,
                                       .processIdentifier = 70,
                                       .identity = u"sway:7"_s}));
    const auto empty = frontWindowOfSwayTree(tree(R"({"id":4,"focused":true,"focus":[],"nodes":[],"name":"1"})"));
    EXPECT_EQ(empty.outcome, FrontWindowReading::Outcome::nothing);
    for (const char* careless : {"", "[]", "{}", R"({"focused":true,"pid":"1"})", R"({"focused":1})"})
        EXPECT_THROW((void)frontWindowOfSwayTree(careless), JsonError) << careless;
}

TEST(ApplicationIdOfControlGroup, IsThatOfTheScope) {
    const std::pair<const char*, const char*> cases[] = {
        {"0::/user.slice/user@1000.service/app.slice/app-gnome-us.zoom.Zoom-4242.scope", "us.zoom.Zoom"},
        {"0::/user.slice/app.slice/app-flatpak-com.brave.Browser-99.scope\n", "com.brave.Browser"},
        {"0::/user.slice/app.slice/app-gnome-google\\x2dchrome-5.scope", "google-chrome"},
        {"0::/app.slice/app-org.kde.konsole@autostart.service", "org.kde.konsole"},
        {"0::/user.slice/session-2.scope", ""},
    };
    for (const auto& [content, id] : cases)
        EXPECT_EQ(applicationIdOfControlGroup(QString::fromUtf8(content)), QString::fromUtf8(id)) << content;
}

TEST(DesktopEntries, AreFoundByFileAndByClassInTheUsersLanguage) {
    const QTemporaryDir own;
    const QTemporaryDir system;
    const auto write = [](const QTemporaryDir& directory, const char* name, const char* content) {
        writeFileAtomically(directory.filePath(QString::fromUtf8(name)), content);
    };
    QDir(system.path()).mkdir(u"kde"_s);
    write(system, "kde/mail.desktop", "[Desktop Entry]\nName=Mail\nName[fr]=Courrier\nName[fr_CA]=Courriel\n");
    write(system, "zoom.desktop", "[Desktop Entry]\nName=Zoom\nStartupWMClass=zoom-class\n");
    write(own, "zoom.desktop",
          "[Desktop Action x]\nName=Wrong\n[Desktop Entry]\nName = Zoom Workplace\n[Other]\nName=No");
    write(own, "broken.desktop", "\xff\xfe[Desktop Entry]\nName=x");
    DesktopEntries entries({own.path(), system.path(), u"/nonexistent"_s}, {u"fr_FR"_s, u"fr"_s});
    const Deadline deadline(Deadline::Clock::now() + std::chrono::minutes(1), -1);
    EXPECT_EQ(entries.name(u"KDE-Mail"_s, deadline), u"Courrier"_s);
    EXPECT_EQ(entries.name(u"zoom"_s, deadline), u"Zoom Workplace"_s);
    EXPECT_EQ(entries.name(u"Zoom-Class"_s, deadline), std::nullopt) << "the user's own entry replaces the other";
    EXPECT_EQ(entries.name(u"broken"_s, deadline), std::nullopt);
    EXPECT_EQ(entries.name(QString(), deadline), std::nullopt);
    write(own, "new.desktop", "[Desktop Entry]\nName=New\n");
    EXPECT_EQ(entries.name(u"new"_s, deadline), u"New"_s);
}
