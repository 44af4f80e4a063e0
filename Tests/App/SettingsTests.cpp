// The settings page: its tables, the ways of its tokens, and the page itself in the window.
#include "App/WindowTest.h"
#include "Support/Warnings.h"

#include "CorvaneApp/Views/SettingsPageModel.h"

#include <QSemaphore>

using namespace corvane;
using testing::ElementsAre;

namespace {

const TokenStoreError broken{-25291, u"no keyring"_s};

UpdateManifest manifest() {
    UpdateManifest made;
    made.version = u"2.0"_s;
    made.build = 7;
    made.downloadURL = QUrl(u"https://example.org/corvane.deb"_s);
    return made;
}

QString valueOf(const std::vector<PickerChoice>& choices, std::size_t number) {
    return choices.at(number).text + u" = "_s + choices.at(number).value;
}

class SettingsTest : public AppModelTest {
protected:
    // The page, with its first question to the token store answered.
    SettingsPageModel& open() {
        model = &fixture.start();
        page = std::make_unique<SettingsPageModel>(*model);
        page->appear();
        return *page;
    }
    bool until(const std::function<bool()>& condition) { return ModelFixture::until(condition); }
    std::optional<QString> stored() { return fixture.tokens->readHuggingFaceToken(); }

    AppModel* model = nullptr;
    std::unique_ptr<SettingsPageModel> page;
};

} // namespace

TEST_F(SettingsTest, ATokenIsStoredTrimmedAndTheFieldEmptied) {
    SettingsPageModel& shown = open();
    EXPECT_FALSE(shown.canSaveToken());
    shown.setToken(u" \n"_s);
    EXPECT_FALSE(shown.canSaveToken());
    shown.save();
    shown.setToken(u"  hf_a "_s);
    EXPECT_TRUE(shown.canSaveToken());
    shown.save();
    shown.save();
    ASSERT_TRUE(until([&] { return shown.hasStoredToken(); }));
    EXPECT_EQ(shown.token(), QString());
    EXPECT_EQ(stored(), u"hf_a"_s);
    EXPECT_EQ(shown.tokenLine().text, u"HF_TOKEN is saved in keychain."_s);

    shown.setToken(u"half typed"_s);
    shown.setNotionToken(u"too"_s);
    shown.leave();
    EXPECT_EQ(shown.token() + shown.notionToken(), QString());
    shown.appear();
    shown.remove();
    ASSERT_TRUE(until([&] { return !shown.hasStoredToken(); }));
    EXPECT_EQ(shown.tokenLine().text, u"HF_TOKEN is not saved yet."_s);
    EXPECT_EQ(shown.tokenLine().iconName, u"circle"_s);
}

TEST_F(SettingsTest, AStoreThatFailsIsToldAndTheTypedTokenStays) {
    SettingsPageModel& shown = open();
    fixture.tokens->setFailure(broken);
    const auto says = [&](const char* words) {
        return until([&] { return shown.errorMessage() == QLatin1String(words); });
    };
    shown.load();
    ASSERT_TRUE(says("Could not check token status in Keychain."));
    shown.setToken(u"hf_a"_s);
    shown.save();
    ASSERT_TRUE(says("Could not save token to Keychain."));
    EXPECT_EQ(shown.token(), u"hf_a"_s);
    shown.remove();
    ASSERT_TRUE(says("Could not remove token from Keychain."));
    fixture.tokens->setFailure(std::nullopt);
    shown.save();
    ASSERT_TRUE(says(""));
    EXPECT_TRUE(shown.hasStoredToken());
}

TEST_F(SettingsTest, AStoreThatHangsHoldsNothingUpAndItsLateAnswerIsNotBelieved) {
    SettingsPageModel& shown = open();
    ASSERT_TRUE(until([&] { return fixture.tokens->asked > 0; }));
    QSemaphore answers;
    fixture.tokens->hold(&answers);
    shown.load(); // hangs, and finds nothing
    ASSERT_TRUE(until([&] { return fixture.tokens->asked > 1; }));
    shown.setToken(u"hf_a"_s);
    shown.save();
    ASSERT_TRUE(until([&] { return shown.hasStoredToken(); }));
    answers.release();
    ASSERT_TRUE(until([&] { return fixture.tokens->answered > 1; }));
    QCoreApplication::processEvents();
    EXPECT_TRUE(shown.hasStoredToken());
}

TEST_F(SettingsTest, TheDefaultsHoldEachOther) {
    SettingsPageModel& shown = open();
    shown.setSpeakerCountMode(u"exact"_s);
    EXPECT_EQ(shown.speakerCountMode(), u"auto"_s);
    EXPECT_TRUE(shown.speakerCountSteppers().isEmpty());
    shown.setSpeakerCountMode(u"range"_s);
    const auto texts = [&] {
        QStringList all;
        for (const QVariant& stepper : shown.speakerCountSteppers())
            all << stepper.value<PanelStepper>().text;
        return all;
    };
    shown.step(static_cast<int>(PanelStepper::Field::max), 3);
    shown.step(static_cast<int>(PanelStepper::Field::min), 5);
    EXPECT_THAT(texts(), ElementsAre(u"Min: 3"_s, u"Max: 3"_s));
    shown.step(static_cast<int>(PanelStepper::Field::max), 2);
    EXPECT_THAT(texts(), ElementsAre(u"Min: 3"_s, u"Max: 3"_s));
    shown.setSpeakerCountMode(u"fixed"_s);
    EXPECT_THAT(texts(), ElementsAre(u"Count: 2"_s));
    EXPECT_EQ(fixture.defaults->integer(defaultsKeys::minSpeakerCount), 3);
}

TEST_F(SettingsTest, ABuildWithoutAnAddressAsksNobodyAndCallsThatNoFailure) {
    fixture.defaults->remove(defaultsKeys::updateAutomaticChecksEnabled);
    SettingsPageModel& shown = open();
    const StatusLine said = shown.updates().status;
    EXPECT_EQ(said.text, u"Configure an update manifest URL first."_s);
    EXPECT_EQ(said.tone, u"secondary"_s);
    EXPECT_EQ(shown.updates().lastChecked, u"Last checked: Never"_s);
    model->updates().setState(UpdateCheckState::of(UpdateAvailability::available(manifest())));
    EXPECT_EQ(shown.updates().status.tone, u"accent"_s);
}

TEST_F(SettingsTest, LinksOpenPagesOfTheWebAndNothingElse) {
    SettingsPageModel& shown = open();
    UpdateManifest update = manifest();
    update.releaseNotesURL = QUrl(u"file:///etc/passwd"_s);
    model->updates().setState(UpdateCheckState::of(UpdateAvailability::available(update)));
    shown.openReleaseNotes();
    EXPECT_THAT(fixture.workspace->opened, testing::IsEmpty());
    shown.downloadUpdate();
    shown.openOllamaDownload();
    EXPECT_THAT(fixture.workspace->opened,
                ElementsAre(u"https://example.org/corvane.deb"_s, u"https://ollama.com/download"_s));
}

TEST(SettingsPanels, ADatabaseIsReadOnlyWithATokenAndAnAddressAndOneAtATime) {
    NotionPanelState state{.hasToken = true, .isFetching = false, .databaseURL = u"x"_s, .databaseTitle = u"T"_s};
    EXPECT_TRUE(canSyncNotionDatabase(state));
    EXPECT_EQ(shownNotionDatabaseTitle(state), u"T"_s);
    state.isFetching = true;
    EXPECT_FALSE(canSyncNotionDatabase(state));
    state = {.hasToken = true, .isFetching = false, .databaseURL = {}, .databaseTitle = {}};
    EXPECT_FALSE(canSyncNotionDatabase(state));
    state = {.hasToken = false, .isFetching = false, .databaseURL = u"x"_s, .databaseTitle = u"T"_s};
    EXPECT_FALSE(canSyncNotionDatabase(state));
    EXPECT_EQ(shownNotionDatabaseTitle(state), QString());
    const auto choices = notionPropertyChoices({{u"Notes"_s, u"rich_text"_s}, {u"Tags"_s, u"select"_s}});
    EXPECT_EQ(valueOf(choices, 0), u"Not mapped = "_s);
    EXPECT_EQ(valueOf(choices, 2), u"Tags (select) = Tags"_s);
}

TEST(SettingsPanels, EachStateOfTheLocalModelHasItsIconAndItsNextStep) {
    const auto said = [](OllamaState state) {
        const OllamaPanel panel = ollamaPanel(state);
        return panel.title.iconName + u"|"_s + panel.nextStepKind + u"|"_s + panel.nextStep;
    };
    EXPECT_EQ(said(OllamaState::unknown), u"circle.dotted||"_s);
    EXPECT_EQ(said(OllamaState::checking), u"circle.dotted||"_s);
    EXPECT_EQ(said(OllamaState::ready), u"checkmark.circle.fill||"_s);
    EXPECT_EQ(said(OllamaState::modelMissing), u"exclamationmark.triangle.fill|command|ollama pull qwen3:1.7b"_s);
    EXPECT_EQ(said(OllamaState::installed),
              u"exclamationmark.triangle.fill|text|Open Ollama, then click the refresh button."_s);
    EXPECT_EQ(said(OllamaState::missing), u"xmark.circle.fill|link|Install Ollama"_s);
}

TEST(SettingsPanels, WhatIsKnownOfUpdatesStaysShownBesideALaterFailure) {
    const auto panel = [](const UpdateCheckState& state) {
        return updatePanel({u"1.0"_s, 5}, state, std::nullopt, u"offline"_s, QLocale::c());
    };
    UpdateManifest update = manifest();
    update.releaseNotes = u""_s;
    const UpdatePanel available = panel(UpdateCheckState::of(UpdateAvailability::available(update)));
    EXPECT_TRUE(available.hasUpdate && available.canCheck && !available.hasReleaseNotesPage);
    EXPECT_EQ(available.version.iconName + available.version.text, u"circleCurrent version: 1.0 (5)"_s);
    EXPECT_EQ(available.status.text, u"Version 2.0 (7) is available."_s);
    EXPECT_EQ(available.errorMessage, u"offline"_s);
    EXPECT_EQ(available.published + available.releaseNotes, QString());
    EXPECT_EQ(available.lastChecked, u"Last checked: Never"_s);
    EXPECT_FALSE(panel(UpdateCheckState::checking()).canCheck);
    const UpdatePanel unsupported = panel(UpdateCheckState::of(UpdateAvailability::unsupported(update)));
    EXPECT_FALSE(unsupported.hasUpdate);
    EXPECT_EQ(unsupported.version.iconName, u"checkmark.circle.fill"_s);
    EXPECT_EQ(unsupported.status.text, u"Version 2.0 requires macOS a newer version."_s);
    EXPECT_EQ(panel(UpdateCheckState::failed(u"offline"_s)).status.text, u"offline"_s);
    EXPECT_EQ(panel(UpdateCheckState::idle()).status.text, QString());
}

TEST_F(WindowTest, TheSettingsPageFollowsEveryStateWithoutAComplaintOfTheViewEngine) {
    const Warnings warnings;
    show();
    ASSERT_TRUE(find(u"HF_TOKEN"_s));
    for (const OllamaState state : {OllamaState::ready, OllamaState::modelMissing, OllamaState::installed,
                                    OllamaState::missing, OllamaState::unknown, OllamaState::checking}) {
        model->localModel().setStatus({.state = state});
        QCoreApplication::processEvents();
    }
    for (const char* mode : {"fixed", "range", "auto"}) {
        model->diarizationDefaults().updateDefaultSpeakerCountMode(QLatin1String(mode));
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(has(u"Click Sync DB to load properties from the selected Notion database."_s));
    model->notion().setDatabaseProperties({{u"Notes"_s, u"rich_text"_s}});
    model->notion().updateNotionSummaryPropertyName(u"Notes"_s);
    ASSERT_TRUE(find(u"Meeting summary"_s));
    EXPECT_EQ(find(u"Meeting summary"_s)->property("shownText").toString(), u"Notes (rich_text)"_s);
    model->notion().updateNotionSummaryPropertyName(u"Gone"_s); // still what a sync asks for
    EXPECT_EQ(find(u"Meeting summary"_s)->property("shownText").toString(), u"Gone"_s);
    model->updates().setState(UpdateCheckState::of(UpdateAvailability::available(manifest())));
    ASSERT_TRUE(find(u"Download Update"_s));
    model->updates().setState(UpdateCheckState::idle());

    find(u"HF_TOKEN"_s)->forceActiveFocus();
    press(Qt::Key_A);
    press(Qt::Key_Return);
    ASSERT_TRUE(ModelFixture::until([&] { return has(u"HF_TOKEN is saved in keychain."_s); }));
    EXPECT_EQ(fixture.tokens->readHuggingFaceToken(), u"a"_s);
    EXPECT_EQ(find(u"HF_TOKEN"_s)->property("text").toString(), QString());
    find(u"Run Setup Wizard"_s)->forceActiveFocus();
    press(Qt::Key_Return);
    ASSERT_TRUE(find(u"Welcome to Corvane"_s));
    press(Qt::Key_Escape);
    EXPECT_TRUE(ModelFixture::until([&] { return !model->setup().isShowingSetupWizard(); }));
    model->selectSidebarItem(SidebarItem::speakerProfiles());
    QCoreApplication::processEvents();
    EXPECT_THAT(Warnings::said(), testing::IsEmpty());
}
