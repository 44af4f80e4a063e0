#include "CorvaneApp/Views/MeetingPanels.h"

#include "CorvaneApp/Views/PanelText.h"
#include "CorvaneCore/Library/StatusText.h"

#include <QDir>

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

const QString separator = QStringLiteral(" · ");

PanelButton button(MeetingAction action, const QString& text, const char* iconName, bool isEnabled = true) {
    PanelButton made;
    made.action = static_cast<int>(action);
    made.text = text;
    made.iconName = QString::fromLatin1(iconName);
    made.isEnabled = isEnabled;
    return made;
}

QString audioText(double seconds) {
    return PanelText::tr("%1 audio").arg(formatDurationPrecise(seconds));
}

// Absent where there is nothing to say.
QString notionStatusText(const MeetingPanelsState& state) {
    if (!state.notionPageURL.isEmpty())
        return PanelText::tr("synced to Notion");
    return state.canSyncToNotion() ? PanelText::tr("ready to sync") : QString();
}

QString transcriptDetail(const MeetingPanelsState& state) {
    QStringList parts;
    if (state.progress.audioDuration)
        parts.append(audioText(*state.progress.audioDuration));
    if (state.progress.elapsed)
        parts.append(elapsedText(state));
    if (const QString notion = notionStatusText(state); !notion.isEmpty())
        parts.append(notion);
    return parts.join(separator);
}

void describeStatus(MeetingStatusPanel& panel, const MeetingPanelsState& state) {
    if (state.isProcessing) {
        panel.title = PanelText::tr("Processing meeting");
        panel.iconName = QStringLiteral("waveform.badge.magnifyingglass");
        panel.tone = panelTone::accent;
        panel.detail = PanelText::tr("Transcribing locally");
        if (state.progress.audioDuration)
            panel.detail += separator + audioText(*state.progress.audioDuration);
    } else if (state.hasTranscript) {
        panel.title = PanelText::tr("Transcript ready");
        panel.iconName = QStringLiteral("checkmark.circle.fill");
        panel.tone = panelTone::positive;
        panel.detail = transcriptDetail(state);
    } else if (state.hasAudio) {
        panel.title = PanelText::tr("Audio ready");
        panel.iconName = QStringLiteral("waveform");
        panel.tone = panelTone::secondary;
        panel.detail = PanelText::tr("Audio is available. Process it to generate transcript and speaker review.");
    } else {
        panel.title = PanelText::tr("Ready for a meeting");
        panel.iconName = QStringLiteral("record.circle");
        panel.tone = panelTone::secondary;
        panel.detail = PanelText::tr("Record a new meeting or import an existing audio file.");
    }
}

std::optional<PanelButton> primaryMeetingButton(const MeetingPanelsState& state) {
    std::optional<PanelButton> made;
    if (state.isProcessing)
        made = button(MeetingAction::none, PanelText::tr("Processing"), "hourglass", false);
    else if (state.hasTranscript)
        return std::nullopt;
    else if (state.canProcess)
        made = button(MeetingAction::processCurrentAudio, PanelText::tr("Process"), "waveform.badge.magnifyingglass");
    else if (!state.hasAudio)
        made = button(MeetingAction::importAudioFile, PanelText::tr("Import Audio"), "square.and.arrow.down");
    if (made)
        made->isProminent = true;
    return made;
}

PanelButton notionSyncButton(const MeetingPanelsState& state) {
    QString text = state.notionPageURL.isEmpty() ? PanelText::tr("Sync to Notion") : PanelText::tr("Sync Again");
    if (state.isSyncingNotion)
        text = PanelText::tr("Syncing");
    PanelButton made = button(MeetingAction::syncToNotion, text, "arrow.triangle.2.circlepath", !state.isSyncingNotion);
    made.isProminent = state.notionPageURL.isEmpty();
    return made;
}

std::vector<PanelButton> secondaryButtons(const MeetingPanelsState& state) {
    std::vector<PanelButton> row;
    row.push_back(
        state.isPlayingAudio
            ? button(MeetingAction::toggleAudioPlayback, PanelText::tr("Stop Audio"), "stop.circle", state.hasAudio)
            : button(MeetingAction::toggleAudioPlayback, PanelText::tr("Play Meeting"), "play.circle", state.hasAudio));
    if (state.hasTranscript && state.canProcess)
        row.push_back(button(MeetingAction::processCurrentAudio, PanelText::tr("Reprocess"), "arrow.clockwise"));
    if (state.hasTranscript && state.canSyncToNotion())
        row.push_back(notionSyncButton(state));
    row.push_back(
        button(MeetingAction::openLastRun, PanelText::tr("Open Files"), "folder", state.lastRunDirectory.has_value()));
    return row;
}

QString orDash(const std::optional<QString>& text) {
    return text.value_or(QStringLiteral("-"));
}

QString durationOrDash(const std::optional<double>& seconds) {
    return seconds ? formatDurationPrecise(*seconds) : QStringLiteral("-");
}

} // namespace

bool MeetingPanelsState::isRecordingActive() const {
    return recording == RecordingState::Kind::recording || recording == RecordingState::Kind::paused;
}

bool MeetingPanelsState::isRecordingSessionVisible() const {
    return isRecordingActive() || hasRecoverableRecording;
}

bool MeetingPanelsState::canSyncToNotion() const {
    return hasNotionToken && !notionDatabaseURL.isEmpty();
}

QVariantList MeetingStatusPanel::primaryButtonList() const {
    return primaryButton ? QVariantList{QVariant::fromValue(*primaryButton)} : QVariantList();
}

QString formatDurationPrecise(double seconds) {
    // A document may hold any number; past this one the text would be no time that anybody can use.
    constexpr double longest = 1e12;
    const double rounded = std::isnan(seconds) ? 0.0 : std::round(std::clamp(seconds, 0.0, longest));
    const auto whole = static_cast<qint64>(rounded);
    if (whole < 60)
        return PanelText::tr("%1s").arg(whole);
    return PanelText::tr("%1m %2s").arg(whole / 60).arg(whole % 60);
}

QString elapsedText(const MeetingPanelsState& state) {
    if (!state.progress.elapsed)
        return QStringLiteral("-");
    const QString duration = formatDurationPrecise(*state.progress.elapsed);
    return state.isProcessing ? duration : PanelText::tr("completed in %1").arg(duration);
}

MeetingStatusPanel meetingStatusPanel(const MeetingPanelsState& state) {
    MeetingStatusPanel panel;
    describeStatus(panel, state);
    panel.primaryButton = primaryMeetingButton(state);
    panel.isProcessing = state.isProcessing;
    panel.progress = state.progress.estimatedProgress;
    panel.progressText = PanelText::tr("%1%").arg(std::lround(100 * std::clamp(panel.progress, 0.0, 1.0)));
    panel.secondaryButtons = secondaryButtons(state);
    return panel;
}

InProgressPanel inProgressPanel(const MeetingPanelsState& state) {
    const bool isPaused = state.recording == RecordingState::Kind::paused;
    const bool isEnabled = !state.isFinishing;
    InProgressPanel panel;
    panel.title = isPaused ? PanelText::tr("Meeting paused") : PanelText::tr("Meeting in progress");
    panel.elapsedText = formatDurationPrecise(state.recordingElapsedSeconds);
    panel.isRecording = state.recording == RecordingState::Kind::recording;
    if (state.hasRecoverableRecording && !state.isRecordingActive()) {
        panel.buttons = {
            button(MeetingAction::resumeRecording, PanelText::tr("Resume"), "play.circle", isEnabled),
            button(MeetingAction::stopRecording, PanelText::tr("Finalize"), "checkmark.circle", isEnabled)};
        return panel;
    }
    panel.buttons = {isPaused
                         ? button(MeetingAction::resumeRecording, PanelText::tr("Resume"), "play.circle", isEnabled)
                         : button(MeetingAction::pauseRecording, PanelText::tr("Pause"), "pause.circle", isEnabled),
                     button(MeetingAction::stopRecording, PanelText::tr("Stop & Process"), "stop.circle", isEnabled)};
    panel.buttons.back().isProminent = true;
    return panel;
}

std::vector<JobDetailRow> jobDetailRows(const MeetingPanelsState& state) {
    QString run = QStringLiteral("-");
    if (state.lastRunDirectory)
        run = QDir(*state.lastRunDirectory).dirName();
    return {
        {PanelText::tr("Run"), run},
        {PanelText::tr("Status"), state.jobStatus ? statusText(*state.jobStatus) : orDash({})},
        {PanelText::tr("Message"), orDash(state.jobMessage)},
        {PanelText::tr("Elapsed"), elapsedText(state)},
        {PanelText::tr("Transcription"), durationOrDash(state.progress.transcriptionElapsed)},
        {PanelText::tr("Audio"), durationOrDash(state.progress.audioDuration)},
        {PanelText::tr("Local LLM"), state.progress.llmMessage.value_or(PanelText::tr("unavailable"))},
    };
}

std::vector<PanelButton> floatingControls(const MeetingPanelsState& state) {
    return {
        button(MeetingAction::startRecording, PanelText::tr("New Recording"), "record.circle",
               !state.isRecordingActive() && !state.isFinishing),
        button(MeetingAction::stopRecording, PanelText::tr("Stop"), "stop.circle",
               state.isRecordingActive() && !state.isFinishing),
        button(MeetingAction::importAudioFile, PanelText::tr("Import"), "square.and.arrow.down"),
        button(MeetingAction::openLocalData, PanelText::tr("Local Data"), "externaldrive"),
    };
}

} // namespace corvane
