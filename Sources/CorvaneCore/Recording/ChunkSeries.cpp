#include "CorvaneCore/Recording/ChunkSeries.h"

#include "CorvaneContract/Files/Files.h"

namespace corvane {

namespace {

constexpr double retrySeconds = 1.0;

} // namespace

ChunkSeries::ChunkSeries(QString chunksDirectory, qint64 nextChunkIndex, double chunkDurationSeconds,
                         std::unique_ptr<AudioInput> input, std::shared_ptr<AudioFiles> files,
                         std::shared_ptr<const Clock> clock, Handlers handlers)
    : m_chunksDirectory(std::move(chunksDirectory)),
      m_nextChunkIndex(nextChunkIndex),
      m_chunkDurationSeconds(chunkDurationSeconds),
      m_files(std::move(files)),
      m_clock(std::move(clock)),
      m_handlers(std::move(handlers)),
      m_input(std::move(input)) {
    m_rotationTimer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_rotationTimer, &QTimer::timeout, &m_rotationTimer, [this] { m_handlers.onTick(); });
}

ChunkSeries::~ChunkSeries() {
    m_input->stop();
}

void ChunkSeries::createDirectory() {
    createPrivateDirectory(m_chunksDirectory);
}

void ChunkSeries::startInput() {
    m_input->start([this](const std::byte* frames, std::size_t count) { m_chunk.write(frames, count); },
                   [this](const AudioInputEvent& event) { m_chunk.monitor().event(event); });
}

QString ChunkSeries::openNext() {
    QString url = chunkURL(m_chunksDirectory, m_nextChunkIndex++);
    const AudioFormat format = m_input->format();
    auto file = m_files->create(url, format);
    announce(m_chunk.exchange(std::move(file), url, format, m_clock->now()));
    return url;
}

void ChunkSeries::close() {
    announce(m_chunk.close(ChunkFile::Afterwards::dropped));
}

std::optional<QString> ChunkSeries::changeOver() {
    try {
        QString url = openNext();
        scheduleRotation();
        return url;
    } catch (const Error&) {
        announce(m_chunk.close(ChunkFile::Afterwards::lost));
        schedule(retrySeconds);
        return std::nullopt;
    }
}

void ChunkSeries::announce(const std::optional<ChunkFile::Closed>& closed) const {
    if (closed)
        m_handlers.onClosed({chunkIndex(closed->url), closed->url, closed->startedAt, m_clock->now()});
}

void ChunkSeries::schedule(double seconds) {
    const int milliseconds = static_cast<int>(seconds * 1000.0);
    // A timer that runs with the wanted period keeps it from when it was scheduled.
    if (!m_rotationTimer.isActive() || m_rotationTimer.interval() != milliseconds)
        m_rotationTimer.start(milliseconds);
}

} // namespace corvane
