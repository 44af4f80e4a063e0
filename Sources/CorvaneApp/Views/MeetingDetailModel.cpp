#include "CorvaneApp/Views/MeetingDetailModel.h"

#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneApp/Views/PanelText.h"

#include <algorithm>
#include <chrono>

namespace corvane {

using namespace std::chrono_literals;

MeetingDetailModel::MeetingDetailModel(AppModel& model, TranscriptPanelModel::PutOnClipboard putOnClipboard,
                                       QObject* parent)
    : QObject(parent), m_model(model), m_speakers(model), m_transcript(std::move(putOnClipboard)) {
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(0ms);
    connect(&m_refresh, &QTimer::timeout, this, &MeetingDetailModel::refresh);
    m_playbackClock.setInterval(200ms);
    connect(&m_playbackClock, &QTimer::timeout, this, &MeetingDetailModel::followPlayback);
    follow();
    refreshTranscript();
    refresh();
}

void MeetingDetailModel::follow() {
    const auto soon = [this] { refreshSoon(); };
    connect(&m_model.recording(), &RecordingPart::recordingStateChanged, this, soon);
    connect(&m_model.recording(), &RecordingPart::recordingElapsedChanged, this, soon);
    connect(&m_model.jobs(), &JobsPart::jobStateChanged, this, soon);
    connect(&m_model.jobs(), &JobsPart::runProgressChanged, this, soon);
    connect(&m_model.library(), &LibraryPart::meetingsChanged, this, soon);
    connect(&m_model.library(), &LibraryPart::selectedSidebarItemChanged, this, soon);
    connect(&m_model.library(), &LibraryPart::lastRecordingChanged, this, soon);
    connect(&m_model.detail(), &MeetingDetailPart::lastRunDirectoryChanged, this, soon);
    connect(&m_model.playback(), &PlaybackPart::playingSpeakerExamplesForChanged, this, soon);
    connect(&m_model.notion(), &NotionPart::hasNotionTokenChanged, this, soon);
    connect(&m_model.notion(), &NotionPart::settingsChanged, this, soon);
    connect(&m_model.notion(), &NotionPart::isSyncingNotionChanged, this, soon);
    connect(&m_model.notion(), &NotionPart::selectedNotionPageURLChanged, this, soon);
    connect(&m_model.voiceProfiles(), &VoiceProfilesPart::speakerProfilesChanged, this, soon);
    SpeakerReviewPart& review = m_model.speakerReview();
    connect(&review, &SpeakerReviewPart::speakerMappingsChanged, this, soon);
    connect(&review, &SpeakerReviewPart::speakerProfileAssignmentsChanged, this, soon);
    connect(&review, &SpeakerReviewPart::speakerProfileMatchesChanged, this, soon);
    connect(&review, &SpeakerReviewPart::voiceProfileUpdateMessagesChanged, this, soon);
    connect(&review, &SpeakerReviewPart::isUpdatingVoiceProfileChanged, this, soon);

    connect(&m_model.playback(), &PlaybackPart::isPlayingAudioChanged, this, [this] {
        followPlayback();
        refreshSoon();
    });
    connect(&m_model.detail(), &MeetingDetailPart::transcriptResultChanged, this, [this] {
        refreshTranscript();
        refreshSoon();
    });
    connect(&m_model.library(), &LibraryPart::selectedSidebarItemChanged, this,
            &MeetingDetailModel::shownMeetingChanged);
    connect(&m_model.library(), &LibraryPart::aboutToChange, this, [this](const char* field) {
        if (qstrcmp(field, "selectedSidebarItem") == 0)
            endTitleEditing();
    });
    connect(&m_model.detail(), &MeetingDetailPart::selectedTitleChanged, this, &MeetingDetailModel::titleChanged);
    connect(&m_model.detail(), &MeetingDetailPart::settingsChanged, this, &MeetingDetailModel::settingsChanged);
    connect(&m_model.notion(), &NotionPart::notionToastChanged, this, &MeetingDetailModel::toastChanged);
    connect(&m_model.notion(), &NotionPart::pendingNotionReplacementPagesChanged, this,
            &MeetingDetailModel::isAskingNotionReplacementChanged);
    connect(&m_model.status(), &StatusPart::statusMessageChanged, this, &MeetingDetailModel::statusMessageChanged);
    connect(&m_model.library(), &LibraryPart::importProgressChanged, this, &MeetingDetailModel::longWorkChanged);
    connect(&m_model.recording(), &RecordingPart::finishingProgressChanged, this, [this] {
        if (m_state.isFinishing != m_model.recording().finishingProgress().has_value())
            refreshSoon();
        Q_EMIT longWorkChanged();
    });
}

MeetingPanelsState MeetingDetailModel::panelsState() const {
    MeetingPanelsState state;
    state.recording = m_model.recording().recordingState().kind;
    state.recordingElapsedSeconds = m_model.recording().recordingElapsed();
    state.hasRecoverableRecording = m_model.hasRecoverableRecording();
    state.isFinishing = m_model.recording().finishingProgress().has_value();
    state.isProcessing = m_model.isProcessing();
    state.hasTranscript = m_model.detail().transcriptResult().has_value();
    state.hasAudio = m_model.currentAudioURL().has_value();
    state.canProcess = m_model.canProcess();
    state.isPlayingAudio = m_model.playback().isPlayingAudio();
    state.hasNotionToken = m_model.notion().hasNotionToken();
    state.notionDatabaseURL = m_model.notion().notionDatabaseURL();
    state.isSyncingNotion = m_model.notion().isSyncingNotion();
    state.notionPageURL = m_model.notion().selectedNotionPageURL();
    state.progress = m_model.jobs().runProgress();
    state.lastRunDirectory = m_model.detail().lastRunDirectory();
    if (const auto& job = m_model.jobs().jobState()) {
        state.jobStatus = job->status;
        state.jobMessage = job->message;
    }
    return state;
}

void MeetingDetailModel::refresh() {
    m_refresh.stop();
    m_speakers.refresh();
    m_transcript.showNames(m_model.speakerReview().speakerMappings());
    MeetingPanelsState state = panelsState();
    m_transcript.showAudio(state.hasAudio ? MeetingAudio::present : MeetingAudio::absent);
    const bool wasVisible = std::exchange(m_isSessionVisible, state.isRecordingSessionVisible());
    m_state = std::move(state);
    m_status = meetingStatusPanel(m_state);
    m_inProgress = corvane::inProgressPanel(m_state);
    m_jobRows = jobDetailRows(m_state);
    m_controls = corvane::floatingControls(m_state);
    Q_EMIT panelsChanged();
    if (wasVisible != m_isSessionVisible)
        Q_EMIT isRecordingSessionVisibleChanged();
}

void MeetingDetailModel::refreshTranscript() {
    if (const auto& result = m_model.detail().transcriptResult())
        m_transcript.showResult(*result);
    else
        m_transcript.clear();
}

// Examples are short pieces out of order: only a meeting that plays on is followed.
void MeetingDetailModel::followPlayback() {
    const PlaybackPart& playback = m_model.playback();
    const bool plays = playback.isPlayingAudio() && !playback.playingSpeakerExamplesFor();
    if (plays != m_playbackClock.isActive())
        plays ? m_playbackClock.start() : m_playbackClock.stop();
    m_transcript.showPlayed(plays ? playback.currentTimeSeconds() : -1.0);
}

QString MeetingDetailModel::title() const {
    return m_model.detail().selectedTitle();
}

bool MeetingDetailModel::isToastShown() const {
    return m_model.notion().notionToast().has_value();
}

QString MeetingDetailModel::toastMessage() const {
    const auto& toast = m_model.notion().notionToast();
    return toast ? toast->message : QString();
}

bool MeetingDetailModel::isToastError() const {
    const auto& toast = m_model.notion().notionToast();
    return toast && toast->isError;
}

bool MeetingDetailModel::isAskingNotionReplacement() const {
    return !m_model.notion().pendingNotionReplacementPages().empty();
}

QString MeetingDetailModel::statusMessage() const {
    return m_model.status().statusMessage();
}

QString MeetingDetailModel::longWorkText() const {
    if (m_model.recording().finishingProgress())
        return PanelText::tr("Finishing the recording");
    return m_model.library().importProgress() ? PanelText::tr("Importing audio") : QString();
}

double MeetingDetailModel::longWorkProgress() const {
    const auto& finishing = m_model.recording().finishingProgress();
    return finishing ? *finishing : m_model.library().importProgress().value_or(0.0);
}

QString MeetingDetailModel::settingsSummary() const {
    return processingSettingsSummary(m_model.detail().settings());
}

QString MeetingDetailModel::language() const {
    return m_model.detail().settings().language;
}

void MeetingDetailModel::setLanguage(const QString& language) {
    ProcessingSettings settings = m_model.detail().settings();
    settings.language = language;
    changeSettings(settings);
}

bool MeetingDetailModel::detectsSpeakers() const {
    return m_model.detail().settings().diarizationEnabled;
}

void MeetingDetailModel::setDetectsSpeakers(bool detects) {
    ProcessingSettings settings = m_model.detail().settings();
    settings.diarizationEnabled = detects;
    changeSettings(settings);
}

QString MeetingDetailModel::speakerCountMode() const {
    return m_model.detail().settings().speakerCountMode;
}

void MeetingDetailModel::setSpeakerCountMode(const QString& mode) {
    ProcessingSettings settings = m_model.detail().settings();
    settings.speakerCountMode = mode;
    changeSettings(settings);
}

QVariantList MeetingDetailModel::speakerCountSteppers() const {
    const ProcessingSettings& settings = m_model.detail().settings();
    return variantList(corvane::speakerCountSteppers(settings.speakerCountMode, settings.speakerCount,
                                                     settings.minSpeakerCount, settings.maxSpeakerCount));
}

void MeetingDetailModel::step(int field, qint64 value) {
    changeSettings(withStepped(m_model.detail().settings(), static_cast<PanelStepper::Field>(field), value));
}

void MeetingDetailModel::changeSettings(const ProcessingSettings& settings) {
    if (settings == m_model.detail().settings())
        return;
    m_model.detail().setSettings(settings);
    m_model.persistCurrentMeetingSettings();
}

void MeetingDetailModel::press(int action) {
    takeTypedTitle();
    switch (static_cast<MeetingAction>(action)) {
    case MeetingAction::none:
        break;
    case MeetingAction::processCurrentAudio:
        m_model.processCurrentAudio();
        break;
    case MeetingAction::importAudioFile:
        Q_EMIT importRequested();
        break;
    case MeetingAction::toggleAudioPlayback:
        m_model.toggleAudioPlayback();
        break;
    case MeetingAction::syncToNotion:
        m_model.syncSelectedMeetingToNotion(AppModel::WhenPageExists::ask);
        break;
    case MeetingAction::openLastRun:
        m_model.openLastRun();
        break;
    case MeetingAction::startRecording:
        m_model.startRecording(std::nullopt);
        break;
    case MeetingAction::pauseRecording:
        m_model.pauseRecording();
        break;
    case MeetingAction::resumeRecording:
        m_model.resumeRecording();
        break;
    case MeetingAction::stopRecording:
        m_model.stopRecording();
        break;
    case MeetingAction::openLocalData:
        m_model.openLocalData();
        break;
    }
}

bool MeetingDetailModel::pressIfEnabled(MeetingAction action) {
    refresh(); // a key may come before the turn of the loop in which the panels follow
    std::vector<PanelButton> buttons = m_controls;
    const auto add = [&buttons](const std::vector<PanelButton>& more) {
        buttons.insert(buttons.end(), more.begin(), more.end());
    };
    if (m_isSessionVisible) {
        add(m_inProgress.buttons);
    } else {
        add(m_status.secondaryButtons);
        if (m_status.primaryButton)
            buttons.push_back(*m_status.primaryButton);
    }
    const bool isEnabled = std::any_of(buttons.begin(), buttons.end(), [&](const PanelButton& button) {
        return button.isEnabled && button.action == static_cast<int>(action);
    });
    if (isEnabled)
        press(static_cast<int>(action));
    return isEnabled;
}

void MeetingDetailModel::beginTitleEditing() {
    m_model.detail().setIsEditingSelectedTitle(true);
}

void MeetingDetailModel::typeTitle(const QString& text) {
    beginTitleEditing();
    m_typedTitle = text;
}

void MeetingDetailModel::endTitleEditing() {
    m_model.detail().setIsEditingSelectedTitle(false);
    takeTypedTitle();
}

void MeetingDetailModel::submitTitle(const QString& text) {
    m_typedTitle.reset();
    m_model.renameSelectedRun(text);
}

void MeetingDetailModel::takeTypedTitle() {
    const auto typed = std::exchange(m_typedTitle, std::nullopt);
    if (typed && *typed != title())
        submitTitle(*typed);
}

void MeetingDetailModel::importChosen(const QUrl& file) {
    if (file.isLocalFile())
        m_model.importAudioFile(file.toLocalFile());
}

void MeetingDetailModel::openNotionPage() {
    m_model.openSelectedNotionPage();
}

void MeetingDetailModel::playFrom(double seconds) {
    m_model.playAudio(seconds);
}

void MeetingDetailModel::replaceNotionPage() {
    m_model.syncSelectedMeetingToNotion(AppModel::WhenPageExists::replace);
    dismissNotionReplacement();
}

void MeetingDetailModel::createNewNotionPage() {
    dismissNotionReplacement();
    m_model.syncSelectedMeetingToNotion(AppModel::WhenPageExists::createNew);
}

void MeetingDetailModel::dismissNotionReplacement() {
    m_model.notion().setPendingPages({});
}

} // namespace corvane
