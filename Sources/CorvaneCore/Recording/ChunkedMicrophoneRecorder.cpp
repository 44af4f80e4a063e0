#include "CorvaneCore/Recording/ChunkedMicrophoneRecorder.h"

namespace corvane {

ChunkedMicrophoneRecorder::ChunkedMicrophoneRecorder(QString chunksDirectory, qint64 nextChunkIndex,
                                                     double chunkDurationSeconds, std::unique_ptr<AudioInput> input,
                                                     std::shared_ptr<AudioFiles> files,
                                                     std::shared_ptr<const Clock> clock)
    : m_series(std::move(chunksDirectory), nextChunkIndex, chunkDurationSeconds, std::move(input), std::move(files),
               std::move(clock),
               {.onClosed =
                    [this](const AudioChunk& chunk) {
                        if (onChunkClosed)
                            onChunkClosed(chunk);
                    },
                .onTick = [this] { rotate(); }}) {}

QString ChunkedMicrophoneRecorder::start() {
    switch (m_state.kind) {
    case RecordingState::Kind::recording:
        return m_state.url;
    case RecordingState::Kind::paused:
        return resume();
    case RecordingState::Kind::stopped:
        throw RecorderError();
    case RecordingState::Kind::idle:
        break;
    }
    m_series.createDirectory();
    QString url = m_series.openNext();
    m_series.startInput();
    m_series.scheduleRotation();
    m_state = RecordingState::recording(url);
    return url;
}

QString ChunkedMicrophoneRecorder::pause() {
    if (m_state.kind != RecordingState::Kind::recording)
        throw RecorderError();
    m_series.stopRotation();
    m_series.input().pause();
    m_series.close();
    m_state = RecordingState::paused(m_state.url);
    return m_state.url;
}

QString ChunkedMicrophoneRecorder::resume() {
    if (m_state.kind != RecordingState::Kind::paused)
        throw RecorderError();
    QString url = m_series.openNext();
    m_series.input().resume();
    m_series.scheduleRotation();
    m_state = RecordingState::recording(url);
    return url;
}

QString ChunkedMicrophoneRecorder::stop() {
    if (!m_state.isActive())
        throw RecorderError();
    m_series.stopRotation();
    m_series.input().stop();
    m_series.close();
    m_state = RecordingState::stopped(m_state.url);
    return m_state.url;
}

void ChunkedMicrophoneRecorder::rotate() {
    if (m_state.kind != RecordingState::Kind::recording)
        return;
    if (const auto url = m_series.changeOver())
        m_state = RecordingState::recording(*url);
}

} // namespace corvane
