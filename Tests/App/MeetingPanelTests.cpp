// The tables by which the panels of the meeting detail and the sidebar say what they show.

#include "Support/PrintQt.h"

#include "CorvaneApp/Views/MeetingPanels.h"
#include "CorvaneApp/Views/ProcessingSettingsPanel.h"
#include "CorvaneApp/Views/RowListModel.h"
#include "CorvaneApp/Views/SidebarModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvane {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

QString q(const char* text) {
    return QString::fromUtf8(text);
}

// "Process", or "(Process)" where it is disabled.
QStringList words(const std::vector<PanelButton>& buttons) {
    QStringList texts;
    for (const PanelButton& button : buttons)
        texts << (button.isEnabled ? button.text : q("(%1)").arg(button.text));
    return texts;
}

QString primary(const MeetingPanelsState& state) {
    const auto button = meetingStatusPanel(state).primaryButton;
    return button ? words({*button}).front() : QString();
}

MeetingPanelsState finished() {
    MeetingPanelsState state;
    state.hasTranscript = true;
    state.hasAudio = true;
    state.canProcess = true;
    state.lastRunDirectory = q("/data/runs/R1");
    state.progress.audioDuration = 722.6;
    state.progress.elapsed = 130;
    return state;
}

} // namespace

TEST(MeetingPanels, TheStatusFollowsTheFirstConditionThatHolds) {
    MeetingPanelsState state;
    EXPECT_EQ(meetingStatusPanel(state).title, q("Ready for a meeting"));
    EXPECT_EQ(primary(state), q("Import Audio"));
    state.hasAudio = true;
    EXPECT_EQ(meetingStatusPanel(state).iconName, q("waveform"));
    EXPECT_EQ(primary(state), QString());
    state.canProcess = true;
    EXPECT_EQ(primary(state), q("Process"));
    state.hasTranscript = true;
    EXPECT_EQ(meetingStatusPanel(state).tone, panelTone::positive);
    EXPECT_EQ(primary(state), QString());
    state.isProcessing = true;
    state.progress.estimatedProgress = 0.576;
    const MeetingStatusPanel processing = meetingStatusPanel(state);
    EXPECT_EQ(processing.title, q("Processing meeting"));
    EXPECT_EQ(processing.detail, q("Transcribing locally"));
    EXPECT_EQ(processing.progressText, q("58%"));
    EXPECT_EQ(primary(state), q("(Processing)"));
    state.progress.audioDuration = 59.6;
    EXPECT_EQ(meetingStatusPanel(state).detail, q("Transcribing locally · 1m 0s audio"));
}

TEST(MeetingPanels, AFinishedMeetingTellsItsFiguresAndWhetherItIsPublished) {
    MeetingPanelsState state = finished();
    EXPECT_EQ(meetingStatusPanel(state).detail, q("12m 3s audio · completed in 2m 10s"));
    EXPECT_THAT(words(meetingStatusPanel(state).secondaryButtons),
                ElementsAre(q("Play Meeting"), q("Reprocess"), q("Open Files")));
    state.hasNotionToken = true;
    EXPECT_EQ(meetingStatusPanel(state).secondaryButtons.size(), 3U) << "a token alone publishes nothing";
    state.notionDatabaseURL = q(" ");
    EXPECT_EQ(meetingStatusPanel(state).detail, q("12m 3s audio · completed in 2m 10s · ready to sync"));
    EXPECT_EQ(words(meetingStatusPanel(state).secondaryButtons)[2], q("Sync to Notion"));
    EXPECT_TRUE(meetingStatusPanel(state).secondaryButtons[2].isProminent);
    state.notionPageURL = q("https://example.com/page");
    EXPECT_EQ(meetingStatusPanel(state).detail, q("12m 3s audio · completed in 2m 10s · synced to Notion"));
    EXPECT_EQ(words(meetingStatusPanel(state).secondaryButtons)[2], q("Sync Again"));
    EXPECT_FALSE(meetingStatusPanel(state).secondaryButtons[2].isProminent);
    state.isSyncingNotion = true;
    EXPECT_EQ(words(meetingStatusPanel(state).secondaryButtons)[2], q("(Syncing)"));
    state.progress.elapsed.reset();
    state.progress.audioDuration.reset();
    EXPECT_EQ(meetingStatusPanel(state).detail, q("synced to Notion"));
    state.isPlayingAudio = true;
    state.hasAudio = false;
    state.canProcess = false;
    state.lastRunDirectory.reset();
    EXPECT_THAT(words(meetingStatusPanel(state).secondaryButtons),
                ElementsAre(q("(Stop Audio)"), q("(Syncing)"), q("(Open Files)")));
}

TEST(MeetingPanels, ARecordingOffersWhatItsStateAllows) {
    using Kind = RecordingState::Kind;
    MeetingPanelsState state;
    EXPECT_FALSE(state.isRecordingSessionVisible());
    EXPECT_THAT(words(floatingControls(state)),
                ElementsAre(q("New Recording"), q("(Stop)"), q("Import"), q("Local Data")));
    state.recording = Kind::stopped;
    state.hasRecoverableRecording = true;
    state.recordingElapsedSeconds = 7200;
    EXPECT_TRUE(state.isRecordingSessionVisible());
    EXPECT_EQ(inProgressPanel(state).title, q("Meeting in progress"));
    EXPECT_EQ(inProgressPanel(state).elapsedText, q("120m 0s"));
    EXPECT_THAT(words(inProgressPanel(state).buttons), ElementsAre(q("Resume"), q("Finalize")));
    state.recording = Kind::paused;
    EXPECT_EQ(inProgressPanel(state).title, q("Meeting paused"));
    EXPECT_THAT(words(inProgressPanel(state).buttons), ElementsAre(q("Resume"), q("Stop & Process")));
    state.recording = Kind::recording;
    EXPECT_THAT(words(inProgressPanel(state).buttons), ElementsAre(q("Pause"), q("Stop & Process")));
    EXPECT_THAT(words(floatingControls(state)),
                ElementsAre(q("(New Recording)"), q("Stop"), q("Import"), q("Local Data")));
    state.isFinishing = true;
    EXPECT_THAT(words(inProgressPanel(state).buttons), ElementsAre(q("(Pause)"), q("(Stop & Process)")));
    EXPECT_THAT(words(floatingControls(state)),
                ElementsAre(q("(New Recording)"), q("(Stop)"), q("Import"), q("Local Data")));
}

TEST(MeetingPanels, WhatIsNotKnownOfARunIsADash) {
    const auto values = [](const MeetingPanelsState& state) {
        QStringList texts;
        for (const JobDetailRow& row : jobDetailRows(state))
            texts << row.value;
        return texts;
    };
    EXPECT_THAT(values({}), ElementsAre(q("-"), q("-"), q("-"), q("-"), q("-"), q("-"), q("unavailable")));
    MeetingPanelsState state = finished();
    state.isProcessing = true;
    state.jobStatus = q("running");
    EXPECT_THAT(values(state),
                ElementsAre(q("R1"), q("running"), q("-"), q("2m 10s"), q("-"), q("12m 3s"), q("unavailable")));
    EXPECT_EQ(formatDurationPrecise(-3), q("0s"));
    EXPECT_EQ(formatDurationPrecise(59.4), q("59s"));
}

TEST(ProcessingSettingsPanel, SummariesAndSteppersFollowTheMode) {
    ProcessingSettings settings;
    EXPECT_EQ(processingSettingsSummary(settings), q("French · speaker detection on · auto"));
    settings.language = q("de");
    settings.speakerCountMode = speakerCountMode::range;
    EXPECT_EQ(processingSettingsSummary(settings), q("English · speaker detection on · 1-8 speakers"));
    settings.speakerCountMode = speakerCountMode::fixed;
    EXPECT_EQ(processingSettingsSummary(settings), q("English · speaker detection on · exactly 2"));
    settings.diarizationEnabled = false;
    EXPECT_EQ(processingSettingsSummary(settings), q("English · speaker detection off"));

    EXPECT_THAT(speakerCountSteppers(speakerCountMode::automatic, 2, 1, 8), IsEmpty());
    const auto range = speakerCountSteppers(speakerCountMode::range, 2, 1, 8);
    ASSERT_EQ(range.size(), 2U);
    EXPECT_EQ(range[0].text, q("Min: 1"));
    EXPECT_EQ(range[1].text, q("Max: 8"));

    using Field = PanelStepper::Field;
    settings.minSpeakerCount = 3;
    settings.maxSpeakerCount = 4;
    EXPECT_EQ(withStepped(settings, Field::min, 6).minSpeakerCount, 4);
    EXPECT_EQ(withStepped(settings, Field::max, 1).maxSpeakerCount, 3);
    EXPECT_EQ(withStepped(settings, Field::count, 0).speakerCount, 1);
}

TEST(Sidebar, RelativeTimesGoInWholeUnits) {
    const QDateTime now = QDateTime::fromSecsSinceEpoch(1'800'000'000, Qt::UTC);
    const auto text = [&](qint64 secondsAgo) { return stableRelativeTime(now.addSecs(-secondsAgo), now); };
    EXPECT_EQ(text(-5000), q("just now"));
    EXPECT_EQ(text(59), q("just now"));
    EXPECT_EQ(text(60), q("1m ago"));
    EXPECT_EQ(text(3599), q("59m ago"));
    EXPECT_EQ(text(86399), q("23h ago"));
    EXPECT_EQ(text(86400), q("1d ago"));
}

TEST(RowList, OnlyWhatDiffersIsChanged) {
    ValueListModel<JobDetailRow> list([](const JobDetailRow& row) { return row.label; });
    QStringList changes;
    QObject::connect(&list, &QAbstractItemModel::rowsInserted, [&](auto, int at) { changes << q("+%1").arg(at); });
    QObject::connect(&list, &QAbstractItemModel::rowsRemoved, [&](auto, int at) { changes << q("-%1").arg(at); });
    QObject::connect(&list, &QAbstractItemModel::rowsMoved,
                     [&](auto, int from, int, auto, int to) { changes << q("%1>%2").arg(from).arg(to); });
    QObject::connect(&list, &QAbstractItemModel::dataChanged,
                     [&](const QModelIndex& at) { changes << q("=%1").arg(at.row()); });
    const auto update = [&](std::vector<JobDetailRow> rows) {
        changes.clear();
        list.update(rows);
        EXPECT_EQ(list.rows(), rows);
        return changes;
    };
    EXPECT_THAT(update({{q("a"), q("1")}, {q("b"), q("1")}, {q("c"), q("1")}}), ElementsAre(q("+0"), q("+1"), q("+2")));
    EXPECT_THAT(update({{q("a"), q("1")}, {q("b"), q("2")}, {q("c"), q("1")}}), ElementsAre(q("=1")));
    EXPECT_THAT(update({{q("c"), q("1")}, {q("a"), q("1")}, {q("d"), q("1")}}),
                ElementsAre(q("-1"), q("1>0"), q("+2")));
    EXPECT_EQ(list.data(list.index(2), list.roleNames().key("label")).toString(), q("d"));
}

} // namespace corvane
