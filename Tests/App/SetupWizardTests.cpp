// The setup wizard: its buttons, what it remembers, and the sheet itself over the window.
#include "App/WindowTest.h"
#include "Support/Warnings.h"

#include "CorvaneApp/Views/SetupWizardModel.h"
#include "CorvaneCore/Services/DependencySetupModel.h"

using namespace corvane;
using testing::ElementsAre;

namespace {

QString footerOf(SetupStep step, bool setupCompleted) {
    const SetupFooter footer = setupFooter(step, setupCompleted);
    QStringList buttons;
    if (footer.canGoBack)
        buttons << u"Back"_s;
    if (footer.hasClose)
        buttons << u"Close"_s;
    if (footer.canSkip)
        buttons << footer.skipText;
    if (footer.hasContinue)
        buttons << u"Continue"_s;
    if (footer.hasFinish)
        buttons << u"Finish Setup"_s;
    return buttons.join(u',');
}

QStringList icons(const SetupWizardModel& wizard) {
    QStringList all;
    for (const QVariant& row : wizard.steps())
        all << row.value<SetupStepRow>().iconName;
    return all;
}

class SetupWizardTest : public WindowTest {
protected:
    SetupWizardTest() { fixture.defaults->remove(defaultsKeys::setupCompleted); }
};

} // namespace

TEST(SetupSteps, EachPageHasItsButtons) {
    EXPECT_EQ(footerOf(SetupStep::welcome, false), u"Continue"_s);
    EXPECT_EQ(footerOf(SetupStep::welcome, true), u"Close,Continue"_s);
    EXPECT_EQ(footerOf(SetupStep::huggingFace, false), u"Back,Skip for Now,Continue"_s);
    EXPECT_EQ(footerOf(SetupStep::ollama, true), u"Back,Close,Skip Ollama,Continue"_s);
    EXPECT_EQ(footerOf(SetupStep::dependencies, false), u"Back,Continue"_s);
    EXPECT_EQ(footerOf(SetupStep::finish, false), u"Back,Finish Setup"_s);
    EXPECT_EQ(footerOf(SetupStep::finish, true), u"Back,Close,Finish Setup"_s);
    EXPECT_EQ(stepAfter(SetupStep::finish), SetupStep::finish);
    EXPECT_EQ(stepBefore(SetupStep::welcome), SetupStep::welcome);
}

TEST_F(SetupWizardTest, TheFirstRunIsGoneThroughToItsEndAndRemembered) {
    AppModel& app = fixture.start();
    SetupWizardModel wizard(app);
    EXPECT_TRUE(wizard.isShowingSetupWizard());
    wizard.close();
    EXPECT_TRUE(wizard.isShowingSetupWizard());
    for (int i = 0; i < 4; ++i)
        wizard.completeStep();
    EXPECT_EQ(wizard.step(), SetupStep::finish);
    EXPECT_EQ(wizard.completedSteps().size(), 4U);
    EXPECT_EQ(icons(wizard).last(), u"checkmark.circle"_s);
    EXPECT_FALSE(app.setup().setupCompleted());
    wizard.finish();
    EXPECT_FALSE(wizard.isShowingSetupWizard());
    EXPECT_EQ(fixture.defaults->boolean(defaultsKeys::setupCompleted), true);

    app.setup().showSetupWizard();
    EXPECT_EQ(wizard.step(), SetupStep::welcome);
    EXPECT_THAT(icons(wizard), ElementsAre(u"waveform.circle"_s, u"person.badge.key"_s, u"sparkles"_s, u"terminal"_s,
                                           u"checkmark.circle.fill"_s));
    wizard.close();
    EXPECT_FALSE(wizard.isShowingSetupWizard());
    EXPECT_FALSE(fixture.start().setup().isShowingSetupWizard());
}

TEST_F(SetupWizardTest, ATokenCompletesItsStepAndAFailureDoesNot) {
    AppModel& app = fixture.start();
    SetupWizardModel wizard(app);
    wizard.goNext();
    wizard.setHfToken(u"  "_s);
    EXPECT_FALSE(wizard.canSaveToken());
    wizard.saveHuggingFaceToken();
    fixture.tokens->setFailure(TokenStoreError{-1, u"no keyring"_s});
    wizard.setHfToken(u"hf_a"_s);
    wizard.saveHuggingFaceToken();
    ASSERT_TRUE(ModelFixture::until([&] { return !wizard.hfError().isEmpty(); }));
    EXPECT_EQ(wizard.hfError(), u"Could not save the token to Keychain."_s);
    EXPECT_EQ(wizard.hfToken(), u"hf_a"_s);
    EXPECT_TRUE(wizard.completedSteps().empty());
    fixture.tokens->setFailure(std::nullopt);
    wizard.saveHuggingFaceToken();
    ASSERT_TRUE(ModelFixture::until([&] { return wizard.hfTokenSaved(); }));
    EXPECT_EQ(wizard.hfToken() + wizard.hfError(), QString());
    EXPECT_EQ(wizard.step(), SetupStep::huggingFace);
    EXPECT_TRUE(wizard.completedSteps().contains(SetupStep::huggingFace));
}

TEST_F(SetupWizardTest, WithAllToolsThereNothingIsInstalledThoughHomebrewIsAskedFor) {
    fixture.processes->onCommand = [](const QStringList& words, const CommandCancellation&) {
        const QString command = words.join(u' ');
        const bool isThere = words.first() == u"uv"_s || command.contains(u"python3"_s) ||
                             command.contains(u"-v uv"_s) || command.contains(u"ffmpeg"_s);
        return CommandResult{isThere ? 0 : 1, {}};
    };
    SetupWizardModel wizard(fixture.start());
    EXPECT_TRUE(wizard.canInstall());
    EXPECT_FALSE(wizard.isHomebrewWanted()) << "nobody knows yet";
    ASSERT_TRUE(ModelFixture::until([&] { return wizard.isHomebrewWanted(); }));
    EXPECT_FALSE(wizard.canInstall());
}

TEST_F(SetupWizardTest, TheButtonsStandWhereTheyStoodOnThePageBefore) {
    fixture.defaults->set(defaultsKeys::setupCompleted, true);
    show();
    model->setup().showSetupWizard();
    const QPointF place = find(u"Close"_s)->mapToScene({});
    for (const char* page : {"Hugging Face", "Ollama", "Local Tools"}) {
        press(Qt::Key_Return);
        ASSERT_TRUE(find(QLatin1String(page)));
        if (page != std::string_view("Ollama")) {
            EXPECT_EQ(find(u"Close"_s)->mapToScene({}), place) << page;
        }
    }
}

TEST_F(SetupWizardTest, TheKeyboardNeverReachesWhatIsOutOfSight) {
    show();
    window().resize(900, 620);
    press(Qt::Key_Return);
    ASSERT_TRUE(find(u"Save Token"_s));
    const auto isInSight = [this] {
        const QQuickItem* item = window().activeFocusItem();
        const QQuickItem* view = item;
        while (view && !view->inherits("QQuickFlickable"))
            view = view->parentItem();
        return !view || QRectF(0, 0, view->width(), view->height())
                            .contains(item->mapRectToItem(view, QRectF(0, 0, item->width(), item->height())));
    };
    QStringList reached;
    for (int i = 0; i < 12; ++i) {
        press(Qt::Key_Tab);
        reached.append(focused());
        EXPECT_TRUE(isInSight()) << focused().toStdString();
    }
    EXPECT_TRUE(reached.contains(u"Create Account"_s) && reached.contains(u"Hugging Face token"_s));
}

TEST_F(SetupWizardTest, TheSheetStaysUntilItIsFinishedAndIsDrivenByTheKeyboard) {
    const Warnings warnings;
    show();
    EXPECT_EQ(focused(), u"Continue"_s);
    press(Qt::Key_Escape);
    for (const char* page : {"Hugging Face", "Ollama", "Local Tools", "Ready to Record"}) {
        press(Qt::Key_Return);
        ASSERT_TRUE(find(QLatin1String(page)));
    }
    EXPECT_TRUE(model->setup().isShowingSetupWizard());
    EXPECT_EQ(focused(), u"Finish Setup"_s);
    press(Qt::Key_Return);
    EXPECT_FALSE(model->setup().isShowingSetupWizard());
    ASSERT_TRUE(ModelFixture::until([&] { return !has(u"Ready to Record"_s); }));
    EXPECT_THAT(Warnings::said(), testing::IsEmpty());
}
