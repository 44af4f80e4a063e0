#include "CorvaneCore/Recording/ChunkedSystemAudioRecorder.h"

#include "CorvaneCore/Recording/SystemAudioCapture.h"

#include <QFileInfo>

#include <algorithm>

namespace corvane {

ChunkedSystemAudioRecorder::ChunkedSystemAudioRecorder(QString chunksDirectory, qint64 nextChunkIndex,
                                                       double chunkDurationSeconds, std::unique_ptr<AudioInput> input,
                                                       std::shared_ptr<AudioFiles> files,
                                                       std::shared_ptr<const Clock> clock)
    : m_series(std::move(chunksDirectory), nextChunkIndex, chunkDurationSeconds, std::move(input), std::move(files),
               std::move(clock),
               {.onClosed = [this](const AudioChunk& chunk) { remember(chunk.url); }, .onTick = [this] { rotate(); }}) {
}

void ChunkedSystemAudioRecorder::primePermission(AudioInputs& inputs) {
    const auto input = inputs.systemAudio();
    input->start([](const std::byte*, std::size_t) {}, {});
    input->stop();
}

void ChunkedSystemAudioRecorder::start() {
    if (m_isCapturing) {
        if (m_isPaused)
            goOn();
        return;
    }
    m_series.createDirectory();
    m_series.startInput();
    m_isCapturing = true;
    goOn();
}

void ChunkedSystemAudioRecorder::resume() {
    if (m_isCapturing)
        goOn();
    else
        start();
}

void ChunkedSystemAudioRecorder::goOn() {
    if (!m_series.input().format().isValid())
        throw SystemAudioCaptureError::formatUnavailable();
    m_series.openNext();
    m_series.stopRotation();
    m_series.scheduleRotation();
    m_isPaused = false;
}

void ChunkedSystemAudioRecorder::pause() {
    m_series.stopRotation();
    m_series.close();
    m_isPaused = true;
}

void ChunkedSystemAudioRecorder::stop() {
    m_series.stopRotation();
    m_series.close();
    m_series.input().stop();
    m_isCapturing = false;
    m_isPaused = false;
}

void ChunkedSystemAudioRecorder::rotate() {
    if (m_isCapturing && !m_isPaused)
        m_series.changeOver();
}

void ChunkedSystemAudioRecorder::remember(const QString& url) {
    if (QFileInfo::exists(url) && std::find(m_chunkURLs.begin(), m_chunkURLs.end(), url) == m_chunkURLs.end())
        m_chunkURLs.push_back(url);
}

} // namespace corvane
