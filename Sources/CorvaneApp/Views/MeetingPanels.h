// The panels of the meeting detail as values: the status card, the card of a recording under way, the details of the
// run and the controls at the bottom. Pure functions of what the model holds; the view draws the result and decides
// nothing.
#pragma once

#include "CorvaneApp/Views/PanelButton.h"
#include "CorvaneCore/Jobs/RunProgress.h"
#include "CorvaneCore/Recording/RecordingState.h"

#include <optional>
#include <vector>

namespace corvane {

// What a press of a panel's button sets off; the number in PanelButton::action.
enum class MeetingAction {
    none,
    processCurrentAudio,
    importAudioFile,
    toggleAudioPlayback,
    syncToNotion,
    openLastRun,
    startRecording,
    pauseRecording,
    resumeRecording,
    stopRecording,
    openLocalData,
};

// What the panels depend on.
struct MeetingPanelsState {
    RecordingState::Kind recording = RecordingState::Kind::idle;
    double recordingElapsedSeconds = 0;
    bool hasRecoverableRecording = false;
    bool isFinishing = false; // a recording that was stopped; nothing else can be done with it meanwhile
    bool isProcessing = false;
    bool hasTranscript = false;
    bool hasAudio = false;
    bool canProcess = false;
    bool isPlayingAudio = false;
    bool hasNotionToken = false;
    QString notionDatabaseURL;
    bool isSyncingNotion = false;
    QString notionPageURL;
    RunProgress progress;
    std::optional<QString> lastRunDirectory;
    std::optional<QString> jobStatus;
    std::optional<QString> jobMessage;

    [[nodiscard]] bool isRecordingActive() const;
    [[nodiscard]] bool isRecordingSessionVisible() const;
    [[nodiscard]] bool canSyncToNotion() const;
};

// The words that the view's tokens have for colours.
namespace panelTone {
inline const QString accent = QStringLiteral("accent");
inline const QString positive = QStringLiteral("positive");
inline const QString secondary = QStringLiteral("secondary");
inline const QString negative = QStringLiteral("negative");
} // namespace panelTone

struct MeetingStatusPanel {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString iconName MEMBER iconName)
    Q_PROPERTY(QString tone MEMBER tone)
    Q_PROPERTY(QString detail MEMBER detail)
    Q_PROPERTY(QVariantList primaryButtons READ primaryButtonList)
    Q_PROPERTY(bool isProcessing MEMBER isProcessing)
    Q_PROPERTY(double progress MEMBER progress)
    Q_PROPERTY(QString progressText MEMBER progressText)
    Q_PROPERTY(QVariantList secondaryButtons READ secondaryButtonList)

public:
    QString title;
    QString iconName;
    QString tone; // of the symbol
    QString detail;
    std::optional<PanelButton> primaryButton;
    bool isProcessing = false; // the progress is drawn
    double progress = 0;       // from 0 to 1
    QString progressText;
    std::vector<PanelButton> secondaryButtons;

    [[nodiscard]] QVariantList primaryButtonList() const;
    [[nodiscard]] QVariantList secondaryButtonList() const { return variantList(secondaryButtons); }
    friend bool operator==(const MeetingStatusPanel&, const MeetingStatusPanel&) = default;
};

struct InProgressPanel {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString elapsedText MEMBER elapsedText)
    Q_PROPERTY(bool isRecording MEMBER isRecording)
    Q_PROPERTY(QVariantList buttons READ buttonList)

public:
    QString title;
    QString elapsedText;
    bool isRecording = false; // sound is taken at this moment
    std::vector<PanelButton> buttons;

    [[nodiscard]] QVariantList buttonList() const { return variantList(buttons); }
    friend bool operator==(const InProgressPanel&, const InProgressPanel&) = default;
};

struct JobDetailRow {
    Q_GADGET
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QString value MEMBER value)

public:
    QString label;
    QString value;

    friend bool operator==(const JobDetailRow&, const JobDetailRow&) = default;
};

// "42s", "3m 7s", "120m 0s": rounded to whole seconds, halves away from zero; what is negative counts as 0.
[[nodiscard]] QString formatDurationPrecise(double seconds);
// "completed in 2m 10s", the bare duration while the run goes on, "-" if it is not known.
[[nodiscard]] QString elapsedText(const MeetingPanelsState& state);

[[nodiscard]] MeetingStatusPanel meetingStatusPanel(const MeetingPanelsState& state);
[[nodiscard]] InProgressPanel inProgressPanel(const MeetingPanelsState& state);
[[nodiscard]] std::vector<JobDetailRow> jobDetailRows(const MeetingPanelsState& state);
[[nodiscard]] std::vector<PanelButton> floatingControls(const MeetingPanelsState& state);

} // namespace corvane
