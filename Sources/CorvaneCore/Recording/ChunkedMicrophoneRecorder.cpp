#include "CorvaneCore/Recording/ChunkedMicrophoneRecorder.h"

#include "CorvaneContract/Files/Files.h"

namespace corvane {

namespace {

constexpr double retrySeconds = 1.0;

} // namespace

ChunkedMicrophoneRecorder::ChunkedMicrophoneRecorder(QString chunksDirectory, qint64 nextChunkIndex,
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

ChunkedMicrophoneRecorder::~ChunkedMicrophoneRecorder() {
    m_input->stop();
}

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
    createPrivateDirectory(m_chunksDirectory);
    QString url = openNextChunk();
    startInput();
    scheduleRotation(m_chunkDurationSeconds);
    m_state = RecordingState::recording(url);
    return url;
}

QString ChunkedMicrophoneRecorder::pause() {
    if (m_state.kind != RecordingState::Kind::recording)
        throw RecorderError();
    m_rotationTimer.stop();
    m_input->pause();
    closeCurrentChunk(ChunkFile::Afterwards::dropped);
    m_state = RecordingState::paused(m_state.url);
    return m_state.url;
}

QString ChunkedMicrophoneRecorder::resume() {
    if (m_state.kind != RecordingState::Kind::paused)
        throw RecorderError();
    QString url = openNextChunk();
    m_input->resume();
    scheduleRotation(m_chunkDurationSeconds);
    m_state = RecordingState::recording(url);
    return url;
}

QString ChunkedMicrophoneRecorder::stop() {
    if (!m_state.isActive())
        throw RecorderError();
    m_rotationTimer.stop();
    m_input->stop();
    closeCurrentChunk(ChunkFile::Afterwards::dropped);
    m_state = RecordingState::stopped(m_state.url);
    return m_state.url;
}

void ChunkedMicrophoneRecorder::rotate() {
    if (m_state.kind != RecordingState::Kind::recording)
        return;
    try {
        m_state = RecordingState::recording(openNextChunk());
        scheduleRotation(m_chunkDurationSeconds);
    } catch (const Error&) {
        closeCurrentChunk(ChunkFile::Afterwards::lost);
        scheduleRotation(retrySeconds);
    }
}

// The new file is made before the old one is let go, so that the files change over without the loss of a buffer. The
// index is spent even if that fails.
QString ChunkedMicrophoneRecorder::openNextChunk() {
    QString url = chunkURL(m_chunksDirectory, m_nextChunkIndex++);
    const AudioFormat format = m_input->format();
    auto file = m_files->create(url, format);
    announce(m_chunk.exchange(std::move(file), url, format, m_clock->now()));
    return url;
}

void ChunkedMicrophoneRecorder::closeCurrentChunk(ChunkFile::Afterwards afterwards) {
    announce(m_chunk.close(afterwards));
}

void ChunkedMicrophoneRecorder::announce(const std::optional<ChunkFile::Closed>& closed) const {
    if (closed && onChunkClosed)
        onChunkClosed({chunkIndex(closed->url), closed->url, closed->startedAt, m_clock->now()});
}

void ChunkedMicrophoneRecorder::startInput() {
    m_input->start([this](const std::byte* frames, std::size_t count) { m_chunk.write(frames, count); },
                   [this](const AudioInputEvent& event) { m_chunk.monitor().event(event); });
}

void ChunkedMicrophoneRecorder::scheduleRotation(double seconds) {
    const int milliseconds = static_cast<int>(seconds * 1000.0);
    // A timer that runs with the wanted period keeps it from when it was scheduled.
    if (!m_rotationTimer.isActive() || m_rotationTimer.interval() != milliseconds)
        m_rotationTimer.start(milliseconds);
}

} // namespace corvane
