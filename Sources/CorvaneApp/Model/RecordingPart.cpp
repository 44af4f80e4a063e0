#include "CorvaneApp/Model/RecordingPart.h"

#include "CorvaneCore/Recording/CaptureWarnings.h"

#include <chrono>

namespace corvane {

using namespace std::chrono_literals;

RecordingPart::RecordingPart(std::shared_ptr<const Clock> clock, QObject* parent)
    : ModelPart(parent), m_clock(std::move(clock)) {
    connect(&m_elapsedClock, &QTimer::timeout, this, [this] {
        if (m_startedAt)
            updateElapsed();
    });
    connect(&m_trackClock, &QTimer::timeout, this, &RecordingPart::readTracks);
}

void RecordingPart::setRecordingState(RecordingState state) {
    publish(m_state, std::move(state), "recordingState", &RecordingPart::recordingStateChanged);
}

void RecordingPart::updateElapsed() {
    const double elapsed = m_startedAt ? static_cast<double>(m_startedAt->msecsTo(m_clock->now())) / 1000.0 : 0.0;
    publish(m_elapsed, elapsed, "recordingElapsed", &RecordingPart::recordingElapsedChanged);
}

void RecordingPart::setFinishingProgress(std::optional<double> fraction) {
    publish(m_finishingProgress, fraction, "finishingProgress", &RecordingPart::finishingProgressChanged);
}

void RecordingPart::startRecordingElapsedClock() {
    m_elapsedClock.start(1s);
    m_trackClock.start(250ms);
}

void RecordingPart::stopRecordingElapsedClock() {
    m_elapsedClock.stop();
    m_trackClock.stop();
}

void RecordingPart::setChunkedRecorder(std::unique_ptr<ChunkedMicrophoneRecorder> recorder) {
    m_microphone = std::move(recorder);
    publish(m_tracks, {}, "tracks", &RecordingPart::tracksChanged);
}

void RecordingPart::setSystemAudioRecorder(std::unique_ptr<ChunkedSystemAudioRecorder> recorder) {
    m_system = std::move(recorder);
}

CaptureReport RecordingPart::report() {
    CaptureReport report;
    if (m_microphone)
        report.tracks.emplace(captureTracks::microphone, m_microphone->monitor().read());
    if (m_system)
        report.tracks.emplace(captureTracks::system, m_system->monitor().read());
    return report;
}

void RecordingPart::readTracks() {
    const std::map<QString, TrackHealth> before = m_tracks;
    publish(m_tracks, report().tracks, "tracks", &RecordingPart::tracksChanged);
    for (const auto& [track, health] : m_tracks) {
        const auto earlier = before.find(track);
        if (const auto sentence =
                captureWarning(track, earlier == before.end() ? TrackHealth() : earlier->second, health))
            Q_EMIT captureWarned(*sentence);
    }
}

} // namespace corvane
