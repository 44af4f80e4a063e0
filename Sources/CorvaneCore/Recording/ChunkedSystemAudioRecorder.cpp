#include "CorvaneCore/Recording/ChunkedSystemAudioRecorder.h"

#include "CorvaneContract/Files/Files.h"

#include <QFileInfo>

#include <algorithm>

namespace corvane {

namespace {

constexpr int retryMilliseconds = 1000;

} // namespace

ChunkedSystemAudioRecorder::ChunkedSystemAudioRecorder(QString chunksDirectory, qint64 nextChunkIndex,
                                                       double chunkDurationSeconds, std::unique_ptr<AudioInput> input,
                                                       std::shared_ptr<AudioFiles> files,
                                                       std::shared_ptr<const Clock> clock)
    : m_chunksDirectory(std::move(chunksDirectory)),
      m_nextChunkIndex(nextChunkIndex),
      m_chunkDurationSeconds(chunkDurationSeconds),
      m_files(std::move(files)),
      m_clock(std::move(clock)),
      m_input(std::move(input)) {
    m_rotationTimer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_rotationTimer, &QTimer::timeout, &m_rotationTimer, [this] { rotate(); });
}

ChunkedSystemAudioRecorder::~ChunkedSystemAudioRecorder() {
    m_input->stop();
}

void ChunkedSystemAudioRecorder::start() {
    if (m_isCapturing) {
        if (m_isPaused)
            goOn();
        return;
    }
    createPrivateDirectory(m_chunksDirectory);
    m_input->start([this](const std::byte* frames, std::size_t count) { m_chunk.write(frames, count); },
                   [this](const AudioInputEvent& event) { m_chunk.monitor().event(event); });
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
    openNextChunk();
    m_rotationTimer.start(static_cast<int>(m_chunkDurationSeconds * 1000.0));
    m_isPaused = false;
}

void ChunkedSystemAudioRecorder::pause() {
    m_rotationTimer.stop();
    remember(m_chunk.close(ChunkFile::Afterwards::dropped));
    m_isPaused = true;
}

void ChunkedSystemAudioRecorder::stop() {
    m_rotationTimer.stop();
    remember(m_chunk.close(ChunkFile::Afterwards::dropped));
    m_input->stop();
    m_isCapturing = false;
    m_isPaused = false;
}

void ChunkedSystemAudioRecorder::rotate() {
    if (!m_isCapturing || m_isPaused)
        return;
    const int period = static_cast<int>(m_chunkDurationSeconds * 1000.0);
    try {
        openNextChunk();
        if (m_rotationTimer.interval() != period)
            m_rotationTimer.start(period);
    } catch (const Error&) {
        remember(m_chunk.close(ChunkFile::Afterwards::lost));
        m_rotationTimer.start(retryMilliseconds);
    }
}

void ChunkedSystemAudioRecorder::openNextChunk() {
    const QString url = chunkURL(m_chunksDirectory, m_nextChunkIndex++);
    const AudioFormat format = m_input->format();
    auto file = m_files->create(url, format);
    remember(m_chunk.exchange(std::move(file), url, format, m_clock->now()));
}

void ChunkedSystemAudioRecorder::remember(const std::optional<ChunkFile::Closed>& closed) {
    if (closed && QFileInfo::exists(closed->url) &&
        std::find(m_chunkURLs.begin(), m_chunkURLs.end(), closed->url) == m_chunkURLs.end())
        m_chunkURLs.push_back(closed->url);
}

} // namespace corvane
