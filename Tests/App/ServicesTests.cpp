// When the model looks for updates and for the local language model, and what it keeps of that.
#include "App/AppModelTest.h"
#include "Support/Fakes/FakeHttpClient.h"

#include "CorvaneCore/Services/UpdateChecker.h"

using namespace corvane;

namespace {

using Kind = UpdateCheckState::Kind;

const QByteArray manifest =
    R"({"version":"2.0","build":7,"downloadURL":"https://example.org/a.deb","sha256":"ab","minimumMacOS":"12"})";

class UpdatesTest : public AppModelTest {
protected:
    UpdatesTest() {
        fixture.http = http;
        fixture.systemVersion = {12, 0, 0};
        fixture.defaults->remove(defaultsKeys::updateAutomaticChecksEnabled);
        configure(u"1.0"_s);
    }
    void configure(const QString& version, const QString& address = u" HTTPS://example.org/m.json "_s) {
        fixture.info = {
            {infoKeys::version, version}, {infoKeys::build, u"7"_s}, {infoKeys::updateManifestURL, address}};
    }
    std::size_t asked() const { return http->requests.size(); }
    static Kind kind(AppModel& model) { return model.updates().updateCheckState().kind; }
    static bool settled(AppModel& model) {
        return ModelFixture::until([&] { return kind(model) != Kind::checking; });
    }
    bool isCached() const { return fixture.defaults->data(defaultsKeys::updateCachedManifest).has_value(); }

    HttpAnswer answer{.status = 200, .headers = {}, .body = manifest};
    std::shared_ptr<FakeHttpClient> http =
        std::make_shared<FakeHttpClient>([this](const HttpRequest&) { return answer; });
};

TEST_F(UpdatesTest, ItLooksOnceADayAndOnlyAtTheMomentsForIt) {
    AppModel& model = fixture.start();
    EXPECT_EQ(kind(model), Kind::checking);
    ASSERT_TRUE(settled(model));
    EXPECT_EQ(kind(model), Kind::available);
    EXPECT_EQ(asked(), 1U);
    fixture.clock->advance(86'399);
    model.selectSidebarItem(SidebarItem::settings());
    AppModel& again = fixture.start();
    EXPECT_EQ(kind(again), Kind::available); // known at once
    EXPECT_EQ(asked(), 1U);
    fixture.clock->advance(1);
    again.pollTick();
    again.selectSidebarItem(SidebarItem::speakerProfiles());
    EXPECT_EQ(asked(), 1U);
    again.selectSidebarItem(SidebarItem::settings());
    EXPECT_EQ(asked(), 2U);
    ASSERT_TRUE(settled(again));

    fixture.clock->advance(90'000);
    again.updateAutomaticUpdateChecksEnabled(false);
    again.selectSidebarItem(SidebarItem::settings());
    EXPECT_FALSE(fixture.start().updates().automaticUpdateChecksEnabled());
    EXPECT_EQ(asked(), 2U);
    fixture.start().updateAutomaticUpdateChecksEnabled(true);
    EXPECT_EQ(asked(), 3U);
    fixture.surface = Surface::command;
    fixture.clock->advance(90'000);
    fixture.start().selectSidebarItem(SidebarItem::settings());
    EXPECT_EQ(asked(), 3U);
}

TEST_F(UpdatesTest, AFailureCountsForTheScheduleAndHidesNoKnownUpdate) {
    answer.status = 404;
    AppModel& model = fixture.start();
    ASSERT_TRUE(settled(model));
    EXPECT_EQ(model.updates().updateCheckState(), UpdateCheckState::failed(u"The update server returned HTTP 404."_s));
    EXPECT_EQ(fixture.defaults->date(defaultsKeys::updateLastCheckAt), fixture.clock->now());
    model.selectSidebarItem(SidebarItem::settings());
    EXPECT_EQ(asked(), 1U);

    answer.status = 200;
    EXPECT_TRUE(ModelFixture::resultOf(model.checkForUpdates()));
    EXPECT_EQ(model.updates().updateCheckErrorMessage(), std::nullopt);
    answer.status = 500;
    EXPECT_FALSE(ModelFixture::resultOf(model.checkForUpdates()));
    EXPECT_EQ(kind(model), Kind::available);
    EXPECT_EQ(model.updates().updateCheckErrorMessage(), u"The update server returned HTTP 500."_s);

    answer = {.status = 200, .headers = {}, .body = QByteArray(manifest).replace("\"12\"", "\"13\"")};
    EXPECT_TRUE(ModelFixture::resultOf(model.checkForUpdates()));
    EXPECT_EQ(kind(model), Kind::unsupported);
    answer.status = 500;
    EXPECT_FALSE(ModelFixture::resultOf(model.checkForUpdates()));
    EXPECT_EQ(kind(model), Kind::failed);
}

TEST_F(UpdatesTest, ACachedManifestIsForgottenWhenTheProgramHasCaughtUp) {
    ASSERT_TRUE(settled(fixture.start()));
    ASSERT_TRUE(isCached());
    configure(u"2.0.0"_s);
    EXPECT_EQ(kind(fixture.start()), Kind::upToDate);
    EXPECT_FALSE(isCached());
    fixture.defaults->set(defaultsKeys::updateCachedManifest, QByteArray("{"));
    EXPECT_EQ(kind(fixture.start()), Kind::idle);
}

TEST_F(UpdatesTest, ABuildWithoutAnAddressAsksNobody) {
    configure(u"1.0"_s, u" "_s);
    AppModel& model = fixture.start();
    EXPECT_FALSE(ModelFixture::resultOf(model.checkForUpdates()));
    EXPECT_EQ(model.updates().updateCheckState(),
              UpdateCheckState::failed(u"Configure an update manifest URL first."_s));
    EXPECT_EQ(model.updates().lastUpdateCheckAt(), std::nullopt);
    EXPECT_EQ(asked(), 0U);
}

TEST_F(UpdatesTest, AnAddressThatIsNoWebAddressIsRefused) {
    fixture.defaults->set(defaultsKeys::updateAutomaticChecksEnabled, false);
    for (const auto& bad : {u"ftp://example.org/m"_s, u"file:///etc/passwd"_s, u"manifest.json"_s, u"http://["_s}) {
        configure(u"1.0"_s, bad);
        AppModel& model = fixture.start();
        EXPECT_FALSE(ModelFixture::resultOf(model.checkForUpdates()));
        EXPECT_EQ(model.updates().updateCheckState(),
                  UpdateCheckState::failed(u"The update manifest URL must be an HTTP or HTTPS URL."_s));
        EXPECT_EQ(model.updates().lastUpdateCheckAt(), std::nullopt);
    }
    EXPECT_EQ(asked(), 0U);
}

TEST_F(AppModelTest, FindingOllamaSwitchesItsUseOnAndNotFindingItChangesNothing) {
    fixture.http = std::make_shared<FakeHttpClient>(
        [](const HttpRequest&) -> HttpAnswer { throw HttpError(HttpError::Kind::connection, u"refused"_s); });
    fixture.ollamaAddress = QUrl(ollamaAddress);
    fixture.ollamaLocations = {data.paths.root + u"/.ollama"_s};
    AppModel& model = fixture.start();
    EXPECT_EQ(model.localModel().ollamaStatus().state, OllamaState::checking);
    ASSERT_TRUE(ModelFixture::until([&] { return model.localModel().ollamaStatus().state == OllamaState::missing; }));
    EXPECT_FALSE(model.localModel().useOllamaSpeakerContext());
    createPrivateDirectory(fixture.ollamaLocations[0]);
    EXPECT_EQ(ModelFixture::resultOf(model.refreshOllamaStatus()).state, OllamaState::installed);
    EXPECT_TRUE(model.localModel().useOllamaSpeakerContext());
    EXPECT_EQ(fixture.defaults->boolean(defaultsKeys::useOllamaSpeakerContext), true);
    fixture.surface = Surface::command;
    EXPECT_EQ(fixture.start().localModel().ollamaStatus().state, OllamaState::unknown);
}

} // namespace
