// The recording that is under way, if any: its recorders, its clock, and what is known of its tracks. Also the clock of
// a selected meeting that waits for recovery.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneCore/Interfaces/Clock.h"
#include "CorvaneCore/Recording/CaptureReport.h"
#include "CorvaneCore/Recording/ChunkedMicrophoneRecorder.h"
#include "CorvaneCore/Recording/ChunkedSystemAudioRecorder.h"
#include "CorvaneCore/Recording/RecordingState.h"

#include <QDateTime>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>

namespace corvane {

class RecordingPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(double recordingElapsed READ recordingElapsed NOTIFY recordingElapsedChanged)

public:
    explicit RecordingPart(std::shared_ptr<const Clock> clock, QObject* parent = nullptr);

    [[nodiscard]] const RecordingState& recordingState() const { return m_state; }
    [[nodiscard]] double recordingElapsed() const { return m_elapsed; } // seconds of wall-clock time, pauses included
    [[nodiscard]] const std::optional<QDateTime>& recordingStartedAt() const { return m_startedAt; }
    [[nodiscard]] const std::optional<QString>& currentRecordingMeetingID() const { return m_meetingID; }
    // The tracks of the recording under way, by name, renewed several times a second.
    [[nodiscard]] const std::map<QString, TrackHealth>& tracks() const { return m_tracks; }
    // How far the joining and mixing of a stopped recording has come, from 0 to 1; absent when none is under way.
    [[nodiscard]] const std::optional<double>& finishingProgress() const { return m_finishingProgress; }

    void setRecordingState(RecordingState state);
    void setCurrentRecordingMeetingID(std::optional<QString> meetingID) { m_meetingID = std::move(meetingID); }
    // Takes a start, or none. The elapsed time follows with the clock, or at once with updateElapsed().
    void setRecordingStartedAt(std::optional<QDateTime> startedAt) { m_startedAt = std::move(startedAt); }
    void updateElapsed(); // to what lies between the start and now, or 0 without a start
    void setFinishingProgress(std::optional<double> fraction);

    void startRecordingElapsedClock();
    void stopRecordingElapsedClock();

    [[nodiscard]] ChunkedMicrophoneRecorder* chunkedRecorder() { return m_microphone.get(); }
    [[nodiscard]] ChunkedSystemAudioRecorder* systemAudioRecorder() { return m_system.get(); }
    void setChunkedRecorder(std::unique_ptr<ChunkedMicrophoneRecorder> recorder);
    void setSystemAudioRecorder(std::unique_ptr<ChunkedSystemAudioRecorder> recorder);
    // What is known of the tracks now.
    [[nodiscard]] CaptureReport report();
    // What was known of the meeting before its recorders were made.
    [[nodiscard]] const CaptureReport& earlierReport() const { return m_earlierReport; }
    void setEarlierReport(CaptureReport report) { m_earlierReport = std::move(report); }

Q_SIGNALS:
    void recordingStateChanged();
    void recordingElapsedChanged();
    void tracksChanged();
    void finishingProgressChanged();
    // Something does not come through, or does again: a sentence for the user.
    void captureWarned(const QString& sentence);

private:
    void readTracks();

    std::shared_ptr<const Clock> m_clock;
    RecordingState m_state;
    double m_elapsed = 0;
    std::optional<QDateTime> m_startedAt;
    std::optional<QString> m_meetingID;
    std::map<QString, TrackHealth> m_tracks;
    CaptureReport m_earlierReport;
    std::optional<double> m_finishingProgress;
    QTimer m_elapsedClock;
    QTimer m_trackClock;
    std::unique_ptr<ChunkedMicrophoneRecorder> m_microphone;
    std::unique_ptr<ChunkedSystemAudioRecorder> m_system;
};

} // namespace corvane
