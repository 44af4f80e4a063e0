#include "Support/PrintQt.h"

#include "CorvaneApp/Views/SpeakerCard.h"
#include "CorvaneApp/Views/SpeakersPanelModel.h"
#include "CorvaneApp/Views/TranscriptPanelModel.h"
#include "CorvaneCore/Transcripts/SpeakerReview.h"
#include "CorvaneCore/VoiceProfiles/SpeakerLinks.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>

#include <gmock/gmock.h>

using namespace corvane;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString ada = QStringLiteral("SPEAKER_00");
const QString bob = QStringLiteral("SPEAKER_01");

QString q(const char* text) {
    return QString::fromUtf8(text);
}

SpeakerProfileMatchSuggestion match(const QString& speaker, const char* name, double score, const QString& status) {
    return {.speaker = speaker, .profileID = {}, .displayName = q(name), .score = score, .status = status};
}

TranscriptResult twoSpeakers() {
    TranscriptResult result;
    result.segments = {
        {0, 1, q(" Hello "), ada}, {1, 2, q(" \n"), bob}, {50, 60, q("there"), ada}, {3725.9996, 3730, q("Yes"), bob}};
    result.speakers = {{bob, 125.4, {{2, 1, q("x")}}}, {ada, 59.5, {}}};
    return result;
}

struct Cards {
    SpeakerNames names;
    SpeakerProfileAssignments assignments;
    SpeakerProfileMatches matches;
    VoiceProfileUpdateMessages messages;

    // Of a shown run with audio, unless `change` says otherwise.
    std::vector<SpeakerCard> of(const TranscriptResult& result,
                                const std::function<void(SpeakerCardsState&)>& change = {}) const {
        SpeakerCardsState state{names, assignments, matches, messages, std::nullopt, true, true, false, QLocale::c()};
        if (change)
            change(state);
        return speakerCards(result, state);
    }
};

} // namespace

TEST(SpeakerReview, NotableLinesThatSayNothingNewAreDropped) {
    TranscriptSpeakerContext context{ada, q("The  Chair"), q("Leads the\nMeeting. "), {}};
    context.notableLines = {q("We ship  on Friday"), q(" we SHIP on friday "), q(" \t"),
                            q("leads THE meeting."), q("chair leads"),         q("Leads the meeting. Always.")};
    EXPECT_THAT(deduplicatedNotableLines(context),
                ElementsAre(q("We ship  on Friday"), q("Leads the meeting. Always.")));
    context.shortLabel = q(" ");
    EXPECT_EQ(deduplicatedNotableLines(context).size(), 3U) << "\"chair leads\" is new where there is no label";
}

TEST(SpeakerReview, PlaysTheFiveEarliestExamplesThatHaveALength) {
    const std::vector<TranscriptExample> examples{{6, 7, {}}, {5, 6, q("first")},  {1, 1, {}},
                                                  {9, 8, {}}, {5, 9, q("second")}, {4, 5, {}},
                                                  {3, 4, {}}, {0, 1, {}},          {8, 9, {}}};
    EXPECT_THAT(playableExamples(examples),
                ElementsAre(examples[7], examples[6], examples[5], examples[1], examples[4]));
}

TEST(SpeakerReview, AnExcerptIsHeardForHalfASecondAtLeastAndNotPastTheEndOfTheFile) {
    EXPECT_DOUBLE_EQ(excerptWaitSeconds(10, 10.2, 60, 10), 0.5);
    EXPECT_DOUBLE_EQ(excerptWaitSeconds(10, 14, 60, 10), 4);
    EXPECT_DOUBLE_EQ(excerptWaitSeconds(58, 64, 60, 58), 2);
    EXPECT_DOUBLE_EQ(excerptWaitSeconds(70, 80, 60, 60), 0.5);
}

TEST(SpeakerReview, SuggestsTheFirstOfTheBestThatWaitForAnAnswer) {
    const auto& suggested = suggestionStatus::suggested;
    const SpeakerProfileMatches matches{
        match(ada, "Low", 0.7, suggested), match(ada, "Ada", 0.8, suggested), match(ada, "Twin", 0.8, suggested),
        match(ada, "No", 0.9, suggestionStatus::rejected), match(bob, "Bob", 0.95, suggested)};
    EXPECT_EQ(suggestedProfileMatch(ada, matches), matches[1]);
    EXPECT_EQ(suggestedProfileMatch(q("SPEAKER_0"), matches), std::nullopt);
}

TEST(SpeakerReview, DurationsAreRoundedToWholeSecondsBeforeTheyAreSplit) {
    EXPECT_EQ(formatDuration(125.4), q("2m 5s"));
    EXPECT_EQ(formatDuration(59.5), q("1m 0s"));
    EXPECT_EQ(formatDuration(7384), q("123m 4s"));
    EXPECT_EQ(formatDuration(1e300), q("153722867280912930m 7s"));
}

TEST(SpeakerCards, AreInTheOrderOfTheResultAndNamedWithoutBlanks) {
    const auto shown = Cards{{{bob, q(" Bob ")}, {ada, q("  ")}}, {}, {}, {}}.of(twoSpeakers());
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_EQ(shown[0].title, q("Bob"));
    EXPECT_EQ(shown[0].name->text, q(" Bob ")) << "the field shows what was typed, or no blank could be typed at all";
    EXPECT_EQ(shown[1].title, ada);
}

TEST(SpeakerCards, ThePlayButtonFollowsThePlaybackOfItsOwnSpeaker) {
    const TranscriptResult result = twoSpeakers();
    auto shown = Cards().of(result, [](auto& state) { state.playingSpeakerExamplesFor = bob; });
    EXPECT_EQ(shown[0].playButton.iconName, q("pause.circle.fill"));
    EXPECT_EQ(shown[0].playButton.accessibilityLabel, q("Pause examples for SPEAKER_01"));
    EXPECT_TRUE(shown[0].playButton.isEnabled);
    EXPECT_EQ(shown[1].playButton.accessibilityLabel, q("Play examples for SPEAKER_00"));
    EXPECT_FALSE(shown[1].playButton.isEnabled) << "no examples";
    shown = Cards().of(result, [](auto& state) { state.hasAudio = false; });
    EXPECT_FALSE(shown[0].playButton.isEnabled) << "no audio";
}

TEST(SpeakerCards, AnIdentifiedSpeakerHasNoNameFieldAndNoSuggestion) {
    Cards cards;
    cards.assignments = {{ada, {{}, q("Ada L.")}}};
    cards.matches = {match(ada, "Eve", 0.99, suggestionStatus::suggested),
                     match(bob, "Bob", 0.876, suggestionStatus::suggested)};
    const auto shown = cards.of(twoSpeakers(), [](auto& state) {
        state.locale = QLocale(QLocale::German);
        state.isUpdatingVoiceProfile = true;
    });
    EXPECT_EQ(shown[1].link.text, q("Identified as Ada L."));
    EXPECT_EQ(shown[1].link.suggestion, std::nullopt);
    EXPECT_FALSE(shown[1].name);
    EXPECT_EQ(shown[0].link.text, q("Suggested Bob · 0,88"));
    EXPECT_EQ(shown[0].link.suggestion, cards.matches[1]);
    for (const PanelButton& button : shown[0].link.buttons)
        EXPECT_TRUE(button.isEnabled) << "a suggestion can be answered while a voice is being updated";
    EXPECT_FALSE(shown[0].name->profileMenu.isEnabled);
    EXPECT_FALSE(cards.of(twoSpeakers(), [](auto& state) { state.isRunShown = false; })[0].name->profileMenu.isEnabled);
    EXPECT_TRUE(cards.of(twoSpeakers())[0].name->profileMenu.isEnabled);
}

TEST(SpeakerCards, TellWhatTheLanguageModelAndTheVoiceUpdateSaid) {
    TranscriptResult result = twoSpeakers();
    result.llm = {
        {}, {}, q("A talk"), {{ada, {}, q("Chairs"), {q("Hi")}}, {ada, q("Late"), {}, {}}, {bob, q("Guest"), {}, {}}}};
    Cards cards;
    cards.messages = {{ada, {VoiceProfileUpdateMessage::Kind::failure, q("No voice")}}, {bob, {}}};
    const auto shown = cards.of(result);
    EXPECT_EQ(speakerSummary(result), q("A talk"));
    EXPECT_EQ(shown[1].context, (SpeakerContextSection{q("Speaker context"), {q("Chairs")}, {q("Hi")}}));
    EXPECT_EQ(shown[0].context, (SpeakerContextSection{q("Guest"), {q("Guest")}, {}}));
    EXPECT_EQ(shown[1].status->iconName, q("exclamationmark.triangle.fill"));
}

TEST(SpeakersPanel, TheProfileMenuOffersOnlyEnabledProfilesAndADividerOnlyBeforeThem) {
    EXPECT_EQ(profileMenuItems({}).size(), 1U);
    std::vector<SpeakerProfileSummary> profiles(2);
    profiles[0].profile.displayName = q("Zoe");
    profiles[0].profile.enabled = false;
    profiles[1].profile.displayName = q("Ada");
    const auto items = profileMenuItems(profiles);
    ASSERT_EQ(items.size(), 4U);
    EXPECT_EQ(items[1].kind, ProfileMenuItem::Kind::divider);
    EXPECT_FALSE(items[2].isEnabled);
    EXPECT_TRUE(items[3].isEnabled);
    EXPECT_EQ(items[3].profile, profiles[1].profile);
}

TEST(SpeakersPanel, TheDialogCreatesAProfileOnceAndOnlyWithAName) {
    QStringList created;
    SpeakersPanelModel panel([&](const QString& speaker, const QString& name) { created << speaker << name; });
    panel.beginProfileCreation(ada, {{ada, q(" Ada ")}});
    EXPECT_EQ(panel.speakerProfileDisplayName(), q("Ada"));
    panel.setSpeakerProfileDisplayName(q(" \n"));
    EXPECT_FALSE(panel.profileCreationDialog().createButton.isEnabled);
    panel.confirmProfileCreation();
    EXPECT_THAT(created, IsEmpty());
    panel.setSpeakerProfileDisplayName(q("Ada L."));
    panel.confirmProfileCreation();
    panel.confirmProfileCreation();
    EXPECT_THAT(created, ElementsAre(ada, q("Ada L.")));

    panel.beginProfileCreation(bob, {});
    EXPECT_EQ(panel.speakerProfileDisplayName(), QString()) << "left over from the speaker before";
    panel.cancelProfileCreation();
    EXPECT_FALSE(panel.isCreatingProfile());
}

TEST(TranscriptPanel, ShowsAndCopiesTurnsWithTheNamesOnScreen) {
    QStringList clipboard;
    TranscriptPanelModel panel([&](const QString& text) { clipboard << text; });
    panel.showResult(twoSpeakers());
    panel.showNames({{ada, q(" Ada ")}, {bob, q(" ")}});
    TranscriptRowsModel& rows = panel.rows();
    ASSERT_EQ(rows.rowCount({}), 2);
    EXPECT_EQ(rows.index(1).data(TranscriptRowsModel::timestampHelp).toString(), q("Play meeting from 01:02:06"));
    EXPECT_FALSE(rows.index(1).data(TranscriptRowsModel::canPlay).toBool());
    panel.showAudio(MeetingAudio::present);
    EXPECT_TRUE(rows.index(1).data(TranscriptRowsModel::canPlay).toBool());
    panel.copyTranscript();
    EXPECT_EQ(panel.copyAccessibilityLabel(), q("Transcript copied"));
    EXPECT_THAT(clipboard, ElementsAre(q("[00:00:00] Ada: Hello there\n[01:02:06] SPEAKER_01: Yes")));
}

TEST(TranscriptPanel, ABlankTranscriptLeavesTheClipboardAlone) {
    QStringList clipboard;
    TranscriptPanelModel panel([&](const QString& text) { clipboard << text; });
    TranscriptResult blank;
    blank.segments = {{0, 1, q(" \n"), ada}};
    panel.showResult(blank);
    EXPECT_EQ(panel.rows().rowCount({}), 0);
    EXPECT_TRUE(panel.canCopy());
    panel.copyTranscript();
    EXPECT_THAT(clipboard, IsEmpty());
    EXPECT_FALSE(panel.transcriptCopied());
}

TEST(TranscriptPanel, MarksTheTurnThatIsHeard) {
    TranscriptPanelModel panel([](const QString&) {});
    panel.showResult(twoSpeakers());
    const auto rowAt = [&](double seconds) {
        panel.showPlayed(seconds);
        return panel.playedRow();
    };
    EXPECT_EQ(rowAt(-1), -1);
    EXPECT_EQ(rowAt(0), 0);
    EXPECT_EQ(rowAt(3725), 0) << "a pause belongs to the turn before it";
    EXPECT_EQ(rowAt(100000), 1);
    panel.clear();
    EXPECT_EQ(panel.playedRow(), -1);
}

TEST(TranscriptPanel, TheTickOfTheCopyButtonGoesACertainTimeAfterTheLastCopy) {
    TranscriptPanelModel panel([](const QString&) {});
    panel.showResult(twoSpeakers());
    QStringList icons;
    QObject::connect(&panel, &TranscriptPanelModel::transcriptCopiedChanged, [&] { icons << panel.copyIconName(); });
    const auto runLoopWhile = [](auto condition) {
        while (condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    };
    panel.copyTranscript();
    bool isHalfway = false;
    QTimer::singleShot(600, &panel, [&] { isHalfway = true; });
    runLoopWhile([&] { return !isHalfway; });
    QElapsedTimer sinceLastCopy;
    sinceLastCopy.start();
    panel.copyTranscript();
    runLoopWhile([&] { return panel.transcriptCopied(); });
    EXPECT_GE(sinceLastCopy.elapsed(), 1100); // the clock of such a timer is a little coarse
    EXPECT_THAT(icons, ElementsAre(q("checkmark"), q("doc.on.doc")));
}
