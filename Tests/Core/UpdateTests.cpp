// Looking for updates: what a manifest means, and what an update server can answer.
#include "Support/FakeHttpServer.h"
#include "Support/Fakes/FakeHttpClient.h"
#include "Support/Fakes/InMemoryUserDefaults.h"
#include "Support/MainLoop.h"
#include "Support/PrintQt.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneCore/Services/UpdateCheckError.h"
#include "CorvaneCore/Services/UpdateChecker.h"
#include "CorvaneCore/Services/UpdateText.h"
#include "CorvaneCore/Settings/DefaultsKeys.h"
#include "CorvaneCore/Settings/UpdateSettings.h"
#include "CorvanePlatform/Linux/Network/QtHttpClient.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using Kind = UpdateAvailability::Kind;

const QByteArray requiredKeys = R"("version":"2.0","build":7,"downloadURL":"https://example.org/a.deb","sha256":"ab")";

QByteArray manifestWith(const QByteArray& more) {
    return '{' + requiredKeys + more + '}';
}

template<typename T>
QString errorOf(const Outcome<T>& outcome) {
    try {
        static_cast<void>(outcome.value());
    } catch (const Error& error) {
        return error.text();
    }
    return u"no error"_s;
}

TEST(AppVersionTest, ComponentsAreNumbersAndTheBuildDecidesATie) {
    struct Case {
        const char* lower;
        int lowerBuild;
        const char* higher;
        int higherBuild;
    };
    for (const Case& one : {Case{"1.9", 9, "1.10", 1}, Case{"1.2", 5, "1.2.0", 6}, Case{"1..2", 1, "1.2", 2},
                            Case{"2.0-rc1", 1, "2.0", 2}, Case{"1.-1", 9, "1", 1}, Case{"", 0, "+0.1", 0},
                            Case{" 9", 1, "0", 2}, Case{"99999999999999999999", 1, "1", 1}}) {
        const AppVersion lower{QString(one.lower), one.lowerBuild};
        const AppVersion higher{QString(one.higher), one.higherBuild};
        EXPECT_LT(lower, higher) << lower.version.toStdString();
        EXPECT_FALSE(higher < lower);
    }
    EXPECT_EQ((AppVersion{u"1.2"_s, 5}), (AppVersion{u"1.2.0"_s, 5}));
}

TEST(AppVersionTest, ASystemIsHeldAgainstThreeComponentsOfItsOwnDistributionOnly) {
    const OperatingSystemVersion present{14, 1, 2};
    for (const char* required : {"", "14", "14.1.2.9", "13.9.9", "x"})
        EXPECT_FALSE(operatingSystemVersionIsOlderThan(present, QString(required))) << required;
    for (const char* required : {"14.1.3", "14.2", "15"})
        EXPECT_TRUE(operatingSystemVersionIsOlderThan(present, QString(required))) << required;
    EXPECT_EQ(presentSystemVersion(u"debian"_s, u"12"_s, u"debian"_s), OperatingSystemVersion::of(u"12"_s));
    for (const auto& [id, version] : {std::pair{u"ubuntu"_s, u"22.04"_s}, {u"debian"_s, u"unknown"_s}})
        EXPECT_FALSE(operatingSystemVersionIsOlderThan(presentSystemVersion(id, version, u"debian"_s), u"99"_s));
}

TEST(UpdateManifestTest, WhatIsOptionalMayBeAbsentAndAWrongTypeFailsAll) {
    const auto full = decodeUpdateManifest(manifestWith(
        R"(,"publishedAt":"2026-03-02T15:00:00+01:00","minimumMacOS":"13","releaseNotesURL":"https://example.org/n",)"
        R"("releaseNotes":"Better.","more":[1])"));
    EXPECT_EQ(full.publishedAt, QDateTime(QDate(2026, 3, 2), QTime(14, 0), Qt::UTC));
    EXPECT_EQ(decodeUpdateManifest(encodeUpdateManifest(full)), full);
    const auto least = decodeUpdateManifest(manifestWith(R"(,"releaseNotes":null)"));
    EXPECT_EQ(decodeUpdateManifest(encodeUpdateManifest(least)), least);
    for (const QByteArray bad : {R"(,"publishedAt":"yesterday")", R"(,"publishedAt":7)", R"(,"minimumMacOS":13)",
                                 R"(,"releaseNotesURL":"")", R"(,"releaseNotes":[])", ","})
        EXPECT_THROW(static_cast<void>(decodeUpdateManifest(manifestWith(bad))), JsonError) << bad.constData();
    for (const char* key : {"version", "build", "downloadURL", "sha256"}) {
        QByteArray without = manifestWith("");
        without.replace('"' + QByteArray(key) + '"', "\"x\"");
        EXPECT_THROW(static_cast<void>(decodeUpdateManifest(without)), JsonError) << key;
    }
    for (const QByteArray text : {"", "[]", "<html>"})
        EXPECT_THROW(static_cast<void>(decodeUpdateManifest(text)), JsonError);
}

TEST(UpdateManifestTest, ItIsBlankFieldsThatAreMissingInTheirOrder) {
    UpdateManifest manifest;
    const auto missing = [&manifest] {
        return errorOf(outcomeOf([&] {
            UpdateChecker::validate(manifest);
            return true;
        }));
    };
    manifest.version = u" \n"_s;
    EXPECT_EQ(missing(), u"The update manifest is missing version.");
    manifest.version = u"1"_s;
    EXPECT_EQ(missing(), u"The update manifest is missing build.");
    manifest.build = 1;
    EXPECT_EQ(missing(), u"The update manifest is missing sha256.");
    manifest.sha256 = u"x"_s;
    EXPECT_EQ(missing(), u"no error");
}

class UpdateCheckerTest : public testing::Test {
protected:
    [[nodiscard]] Outcome<UpdateAvailability> check(HttpClient& http) {
        const UpdateChecker checker{m_server.address(u"/m.json"_s), {u"1.9"_s, 9}, {13, 0, 0}};
        return loopedResult(checker.check(http, m_asker));
    }
    [[nodiscard]] Outcome<UpdateAvailability> check() { return check(m_http); }

    HttpAnswer m_answer{.status = 200, .headers = {}, .body = manifestWith("")};
    FakeHttpServer m_server{[this](const ReceivedRequest&) { return m_answer; }};
    QtHttpClient m_http;
    QObject m_asker;
};

TEST_F(UpdateCheckerTest, AManifestIsHeldAgainstTheVersionAndTheSystem) {
    EXPECT_EQ(check().value().kind, Kind::available);
    m_answer.body = manifestWith(R"(,"minimumMacOS":"13.0.1")");
    EXPECT_EQ(check().value(), UpdateAvailability::unsupported(decodeUpdateManifest(m_answer.body)));
    m_answer.body.replace("2.0", "1.9").replace(":7", ":9");
    EXPECT_EQ(check().value(), UpdateAvailability::upToDate());
}

TEST_F(UpdateCheckerTest, EveryCheckReachesTheServerWithABoundAndNothingAdded) {
    FakeHttpClient http([this](const HttpRequest&) { return m_answer; });
    static_cast<void>(check(http).value());
    static_cast<void>(check(http).value());
    ASSERT_EQ(http.requests.size(), 2U);
    EXPECT_EQ(http.requests[0].method, "GET");
    EXPECT_TRUE(http.requests[0].headers.empty());
    EXPECT_EQ(http.requests[0].timeout, std::chrono::seconds(10));
}

TEST_F(UpdateCheckerTest, WhatIsWrongWithTheAnswerIsTold) {
    for (const int status : {404, 301, 500}) {
        m_answer = {.status = status, .headers = {}, .body = manifestWith("")};
        EXPECT_EQ(errorOf(check()), u"The update server returned HTTP %1."_s.arg(status));
    }
    m_answer = {.status = 200, .headers = {}, .body = manifestWith("").replace(":7", ":0")};
    EXPECT_EQ(errorOf(check()), u"The update manifest is missing build.");
    m_answer.body = QByteArray(2 * 1024 * 1024, ' ');
    EXPECT_EQ(errorOf(check()), u"The answer is larger than 1 MB.");
    m_answer.body = "<html>";
    EXPECT_THROW(static_cast<void>(check().value()), JsonError);
    m_server.forget();
    m_server.faults = {{0, Fault::hangUp}, {1, Fault::hangUp}, {2, Fault::cutShort}};
    EXPECT_THROW(static_cast<void>(check().value()), HttpError);
    FakeHttpClient noHttp([](const HttpRequest&) { return HttpAnswer(); });
    EXPECT_EQ(errorOf(check(noHttp)), u"The update server returned an invalid response.");
}

TEST_F(UpdateCheckerTest, ARedirectToAnotherHostIsFollowed) {
    FakeHttpServer elsewhere(
        [](const ReceivedRequest&) { return HttpAnswer{.status = 200, .headers = {}, .body = manifestWith("")}; });
    m_answer = {.status = 302, .headers = {{"Location", elsewhere.address(u"/n"_s).toEncoded()}}, .body = {}};
    EXPECT_EQ(check().value().kind, Kind::available);
    EXPECT_EQ(elsewhere.requests().size(), 1U);
}

TEST(UpdateSettingsTest, TheDictionaryComesOfTheBuildAndOfAFileOverIt) {
    const QTemporaryDir directory;
    const QString file = directory.filePath(infoFile);
    const InfoDictionary builtIn{{infoKeys::version, u"1.5"_s}, {infoKeys::updateManifestURL, u" "_s}};
    const InMemoryUserDefaults defaults;
    EXPECT_EQ(withEntriesOfFile(builtIn, file), builtIn);
    writeFileAtomically(file, "[]");
    EXPECT_EQ(withEntriesOfFile(builtIn, file), builtIn);
    EXPECT_EQ(UpdateSettings(defaults, builtIn).manifestURL(), defaultUpdateManifestURL);
    writeFileAtomically(file, R"({"CFBundleVersion":"12x","CorvaneUpdateManifestURL":"https://example.org/m "})");
    const InfoDictionary info = withEntriesOfFile(builtIn, file);
    EXPECT_EQ(UpdateSettings(defaults, info).manifestURL(), u"https://example.org/m ");
    const AppVersion version = UpdateChecker::currentBundleVersion(info);
    EXPECT_EQ(version.version, u"1.5");
    EXPECT_EQ(version.build, 0);
    EXPECT_EQ(UpdateChecker::currentBundleVersion({{infoKeys::version, 7.0}}).version, u"0.0.0");
}

TEST(UpdateTextTest, DatesHaveTheOrderOfTheLocale) {
    const QDateTime noon(QDate(2026, 3, 2), QTime(12, 5));
    EXPECT_EQ(updateDateText(noon, QLocale(QLocale::English, QLocale::UnitedStates)), u"Mar 2, 2026, 12:05 PM");
    EXPECT_EQ(updateDateText(noon, QLocale(QLocale::French, QLocale::France)), u"2 mars 2026, 12:05");
    EXPECT_EQ(lastCheckedText({}, QLocale::c()), u"Last checked: Never");
    UpdateManifest manifest;
    manifest.version = u"2.0 %2"_s;
    manifest.build = 3;
    EXPECT_EQ(updateStatusText(UpdateCheckState::of(UpdateAvailability::available(manifest))),
              u"Version 2.0 %2 (3) is available.");
    EXPECT_EQ(updateStatusText(UpdateCheckState::of(UpdateAvailability::unsupported(manifest))),
              u"Version 2.0 %2 requires macOS a newer version.");
}

} // namespace
} // namespace corvane
