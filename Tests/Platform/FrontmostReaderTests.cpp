#include "Support/FakeHttpServer.h"
#include "Support/MainLoop.h"
#include "Support/PrintQt.h"
#include "Support/PrivateDesktop.h"
#include "Support/Waiting.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvanePlatform/Linux/Frontmost/DesktopFrontmostApplicationReader.h"

#include <QElapsedTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QScopeGuard>
#include <QTimer>

#include <gmock/gmock.h>
#include <signal.h>

using namespace corvane;

namespace {

using Facts = std::optional<FrontmostApplication>;

// Reads until the facts are as wanted; what was read last otherwise.
template<typename Wanted>
Facts factsWhen(DesktopFrontmostApplicationReader& reader, Wanted wanted) {
    Facts facts;
    QElapsedTimer pause;
    (void)loopUntil([&] {
        if (pause.isValid() && pause.elapsed() < 20)
            return false;
        facts = loopedResult(reader.read());
        pause.start();
        return wanted(facts);
    });
    return facts;
}

Facts factsOfTitle(DesktopFrontmostApplicationReader& reader, const QString& title) {
    return factsWhen(reader, [&title](const Facts& facts) { return facts && facts->windowTitle == title; });
}

class Stopped {
public:
    explicit Stopped(std::int64_t process) : m_process(static_cast<pid_t>(process)) { ::kill(m_process, SIGSTOP); }
    ~Stopped() { ::kill(m_process, SIGCONT); }
    Stopped(const Stopped&) = delete;
    Stopped& operator=(const Stopped&) = delete;

private:
    pid_t m_process;
};

// A look that meets a hung server: within its time, with the main loop running and an end that waits for nothing.
Facts expectPrompt(std::unique_ptr<DesktopFrontmostApplicationReader> reader, const char* what) {
    QElapsedTimer pause;
    qint64 longestPause = 0;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, [&] { longestPause = std::max(longestPause, pause.restart()); });
    tick.start(1);
    QElapsedTimer timer;
    timer.start();
    pause.start();
    const Facts facts = loopedResult(reader->read());
    EXPECT_LT(timer.elapsed(), 1000) << what;
    EXPECT_LT(longestPause, 250) << what << ": the main loop waited";
    const auto underWay = reader->read();
    timer.restart();
    reader.reset();
    EXPECT_LT(timer.elapsed(), 250) << what << ": its end waited";
    EXPECT_TRUE(underWay.isFinished());
    return facts;
}

auto readerOf(const DesktopSession& session) {
    return std::make_unique<DesktopFrontmostApplicationReader>(session);
}

} // namespace

TEST(FrontmostReader, TellsTheWindowsOfX11AndNothingOfAServerThatHangs) {
    if (!PrivateDesktop::isInstalled())
        GTEST_SKIP() << "needs Xvfb, openbox, chromium and at-spi2-core";
    PrivateDesktop desktop;
    DesktopFrontmostApplicationReader reader(desktop.session());
    EXPECT_EQ(loopedResult(reader.read()), std::nullopt) << "an empty desktop";

    const auto zoom = desktop.showWindow(u"zoom"_s, u"zoom"_s, u"Réunion Zoom"_s);
    const Facts meeting = factsOfTitle(reader, u"Réunion Zoom"_s);
    EXPECT_EQ(meeting, (FrontmostApplication{.bundleIdentifier = u"us.zoom.xos"_s,
                                             .localizedName = u"zoom"_s,
                                             .processIdentifier = zoom->processID(),
                                             .windowTitle = u"Réunion Zoom"_s,
                                             .activeTab = {}}));
    const auto teams = desktop.showWindow(u"crx_cifhbcnohmdccbgoicgdjpfamggdegmo"_s, u"Google-chrome"_s, u"Call"_s,
                                          PrivateDesktop::Title::old);
    const Facts call = factsOfTitle(reader, u"Call"_s);
    ASSERT_TRUE(call);
    EXPECT_EQ(call->bundleIdentifier, u"com.microsoft.teams2"_s);
    desktop.end(teams);
    EXPECT_TRUE(factsOfTitle(reader, u"Réunion Zoom"_s)) << "the window behind comes to the front";
    EXPECT_EQ(reader.status().source, FrontWindowSource::x11);
    EXPECT_EQ(reader.status().accessibility, FrontmostStatus::Accessibility::off);

    {
        const Stopped bus(desktop.sessionBus());
        const Facts facts = expectPrompt(readerOf(desktop.session()), "a session bus that hangs");
        EXPECT_EQ(facts, meeting);
    }
    {
        const Stopped server(desktop.xServer());
        EXPECT_EQ(expectPrompt(readerOf(desktop.session()), "an X server that hangs"), std::nullopt);
        EXPECT_EQ(loopedResult(reader.read()), std::nullopt) << "with a connection from before";
    }
    EXPECT_TRUE(factsOfTitle(reader, u"Réunion Zoom"_s)) << "it goes on when the server does";
    ::kill(static_cast<pid_t>(desktop.xServer()), SIGKILL);
    const auto isNothing = [](const Facts& facts) { return !facts; };
    EXPECT_EQ(factsWhen(reader, isNothing), std::nullopt);
}

TEST(FrontmostReader, TellsTheTabInFrontOfARealBrowserAndNoPrivateOne) {
    if (!PrivateDesktop::isInstalled())
        GTEST_SKIP() << "needs Xvfb, openbox, chromium and at-spi2-core";
    FakeHttpServer server(
        [](const ReceivedRequest& request) {
            return HttpAnswer{.status = 200,
                              .headers = {{"Content-Type", "text/html"}},
                              .body = "<title>Page " + request.target.mid(1) + "</title><p>text"};
        },
        FakeHttpServer::Transport::selfSigned);
    PrivateDesktop desktop(PrivateDesktop::Accessibility::on);
    DesktopFrontmostApplicationReader reader(desktop.session());
    const QString port = QString::number(server.address().port());
    const auto rule = u"--host-resolver-rules=MAP meet.google.com 127.0.0.1:%1,MAP docs.test 127.0.0.1:%1"_s.arg(port);
    const auto browser = desktop.browse({rule, u"https://meet.google.com/abc"_s});
    const auto showing = [&reader](const char* url) {
        return factsWhen(reader, [url](const Facts& facts) {
            return facts && facts->activeTab && facts->activeTab->url == QString::fromUtf8(url);
        });
    };
    // The page's title comes to the tab before it comes to the window.
    static_cast<void>(
        factsWhen(reader, [](const Facts& facts) { return facts && facts->windowTitle == u"Page abc - Chromium"_s; }));
    const Facts call = showing("https://meet.google.com/abc");
    ASSERT_TRUE(call);
    ASSERT_TRUE(call->activeTab);
    EXPECT_EQ(call->bundleIdentifier, u"com.google.Chrome"_s);
    EXPECT_EQ(call->activeTab, (BrowserTab{.url = u"https://meet.google.com/abc"_s, .title = u"Page abc"_s}));
    EXPECT_EQ(call->windowTitle, u"Page abc - Chromium"_s);
    EXPECT_EQ(call->processIdentifier, browser->processID());
    EXPECT_EQ(reader.status().accessibility, FrontmostStatus::Accessibility::on);

    // A tab in the background is not told, and the address follows.
    const auto second = desktop.browse({u"https://docs.test/x"_s});
    EXPECT_EQ(showing("https://docs.test/x")->activeTab->title, u"Page x"_s);
    {
        const Stopped hung(browser->processID());
        const Facts facts = expectPrompt(readerOf(desktop.session()), "a browser that hangs");
        ASSERT_TRUE(facts);
        EXPECT_EQ(facts->bundleIdentifier, u"com.google.Chrome"_s);
        EXPECT_FALSE(facts->activeTab);
    }
    {
        const Stopped bus(desktop.accessibilityBus());
        const Facts facts = expectPrompt(readerOf(desktop.session()), "an accessibility bus that hangs");
        EXPECT_TRUE(facts && !facts->activeTab);
    }
    const auto hidden = desktop.browse({u"--incognito"_s, u"https://meet.google.com/secret"_s});
    DesktopFrontmostApplicationReader fresh(desktop.session());
    const auto isRequested = [&server] {
        return std::ranges::any_of(server.requests(), [](const auto& request) { return request.target == "/secret"; });
    };
    ASSERT_TRUE(loopUntil(isRequested));
    const Facts isPrivate = factsWhen(fresh, [](const Facts& facts) { return facts && !facts->activeTab; });
    ASSERT_TRUE(isPrivate);
    EXPECT_EQ(isPrivate->windowTitle, std::nullopt);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(loopedResult(readerOf(desktop.session())->read())->activeTab, std::nullopt);
}

TEST(FrontmostReader, FindsTheFrontWithoutAWindowManagerAndAPageThatKeepsItsTitle) {
    if (!PrivateDesktop::isInstalled())
        GTEST_SKIP() << "needs Xvfb, openbox, chromium and at-spi2-core";
    const FakeHttpServer server(
        [](const ReceivedRequest&) {
            return HttpAnswer{
                .status = 200, .headers = {{"Content-Type", "text/html"}}, .body = "<title>Same</title><p>text"};
        },
        FakeHttpServer::Transport::selfSigned);
    PrivateDesktop desktop(PrivateDesktop::Accessibility::on, PrivateDesktop::WindowManager::absent);
    DesktopFrontmostApplicationReader reader(desktop.session());
    const auto slack = desktop.showWindow(u"xterm"_s, u"Slack"_s, u"Huddle"_s);
    const Facts huddle = factsOfTitle(reader, u"Huddle"_s);
    ASSERT_TRUE(huddle);
    EXPECT_EQ(huddle->localizedName, u"Slack"_s) << "named by its class, not by the program that shows it";
    const auto teams = desktop.showWindow(u"x"_s, u"Microsoft Teams - Preview"_s, u"Call"_s);
    EXPECT_TRUE(factsOfTitle(reader, u"Call"_s)) << "the window on top";

    const QString port = QString::number(server.address().port());
    const auto rule = u"--host-resolver-rules=MAP meet.google.com 127.0.0.1:%1,MAP docs.test 127.0.0.1:%1"_s.arg(port);
    for (const char* url : {"https://docs.test/", "https://meet.google.com/x", "https://docs.test/y"}) {
        const auto browser = desktop.browse({rule, QString::fromUtf8(url)});
        const Facts page = factsWhen(reader, [url](const Facts& facts) {
            return facts && facts->activeTab && facts->activeTab->url == QString::fromUtf8(url);
        });
        ASSERT_TRUE(page && page->activeTab) << url;
        EXPECT_EQ(page->activeTab->url, QString::fromUtf8(url));
    }
}

TEST(FrontmostReader, AsksSwayFirstAndWaitsForNoCompositorThatHangs) {
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"sway.sock"_s);
    QLocalServer compositor;
    ASSERT_TRUE(compositor.listen(path));
    QByteArray tree = R"({"id":1,"focused":true,"pid":42,"app_id":"Slack","name":"Huddle | team"})";
    bool isAnswering = true;
    QObject::connect(&compositor, &QLocalServer::newConnection, [&] {
        QLocalSocket* const client = compositor.nextPendingConnection();
        if (!isAnswering)
            return;
        const auto size = static_cast<quint32>(tree.size());
        const quint32 type = 4;
        client->write(QByteArray("i3-ipc") + QByteArray(reinterpret_cast<const char*>(&size), 4) +
                      QByteArray(reinterpret_cast<const char*>(&type), 4) + tree);
    });
    const DesktopSession session{
        .x11Display = {}, .waylandDisplay = "wayland-1", .swaySocket = path.toUtf8(), .sessionBusAddress = {}};
    DesktopFrontmostApplicationReader reader(session);
    EXPECT_EQ(loopedResult(reader.read()), (FrontmostApplication{.bundleIdentifier = u"com.tinyspeck.slackmacgap"_s,
                                                                 .localizedName = u"Slack"_s,
                                                                 .processIdentifier = 42,
                                                                 .windowTitle = u"Huddle | team"_s,
                                                                 .activeTab = {}}));
    // Whoever asks during a look is answered too.
    const auto first = reader.read();
    const auto second = reader.read();
    EXPECT_EQ(loopedResult(first), loopedResult(second));
    tree = "{";
    EXPECT_EQ(loopedResult(reader.read()), std::nullopt);
    isAnswering = false;
    EXPECT_EQ(expectPrompt(readerOf(session), "a compositor that hangs"), std::nullopt);
}

TEST(FrontmostReader, KnowsNothingWithoutADesktop) {
    const auto nowhere = readerOf({.x11Display = ":987",
                                   .waylandDisplay = "wayland-987",
                                   .swaySocket = "/nonexistent/sway",
                                   .sessionBusAddress = "unix:path=/nonexistent/bus"});
    EXPECT_EQ(loopedResult(nowhere->read()), std::nullopt);
    EXPECT_EQ(nowhere->status().source, std::nullopt);
    EXPECT_EQ(nowhere->status().accessibility, FrontmostStatus::Accessibility::unknown);
    EXPECT_EQ(loopedResult(readerOf({})->read()), std::nullopt);
}
