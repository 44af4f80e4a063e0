#include "CorvaneWorker/Audio/AudioInput.h"

#include "CorvaneWorker/WorkerError.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace corvane {

namespace {

// Playlists and reference movies name further files; what they name is none of this program's business.
int refuseFurtherFile(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EACCES);
}

constexpr int bufferBytes = 64 * 1024;

} // namespace

AudioInput::AudioInput(const QString& path) : m_name(QFileInfo(path).fileName()) {
    try {
        openFile(path);
        openFormat();
    } catch (...) {
        close();
        throw;
    }
}

AudioInput::~AudioInput() {
    close();
}

void AudioInput::openFile(const QString& path) {
    if (path.isEmpty() || path.contains(QChar(0)))
        throw WorkerError(QStringLiteral("No audio file was given."));
    m_fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (m_fd < 0 && errno == ENOENT)
        throw WorkerError(QStringLiteral("The audio file “%1” does not exist.").arg(m_name));
    if (m_fd < 0)
        throw WorkerError(
            QStringLiteral("The audio file “%1” could not be opened: %2.").arg(m_name, qt_error_string(errno)));
    struct stat status {};
    if (::fstat(m_fd, &status) != 0 || !S_ISREG(status.st_mode))
        throw WorkerError(QStringLiteral("“%1” is not a file that holds a recording.").arg(m_name));
    if (status.st_size == 0)
        throw WorkerError(QStringLiteral("The audio file “%1” is empty.").arg(m_name));
    m_size = status.st_size;
}

void AudioInput::openFormat() {
    const WorkerError unreadable(
        QStringLiteral("“%1” is not an audio or movie file that Corvane can read.").arg(m_name));
    auto* buffer = static_cast<unsigned char*>(av_malloc(bufferBytes));
    m_io = avio_alloc_context(buffer, bufferBytes, 0, this, &AudioInput::readPacket, nullptr, &AudioInput::seek);
    m_format = avformat_alloc_context();
    if (m_io == nullptr || m_format == nullptr)
        throw std::bad_alloc();
    m_format->pb = m_io;
    m_format->io_open = &refuseFurtherFile;
    // The name is withheld on purpose: the content decides what a file is, not its extension. A failure frees the
    // context and clears the pointer.
    if (avformat_open_input(&m_format, "", nullptr, nullptr) < 0)
        throw unreadable;
    if (avformat_find_stream_info(m_format, nullptr) < 0)
        throw unreadable;
}

void AudioInput::close() {
    if (m_format != nullptr)
        avformat_close_input(&m_format);
    if (m_io != nullptr) {
        av_freep(&m_io->buffer);
        avio_context_free(&m_io);
    }
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

double AudioInput::fractionRead() const {
    return std::clamp(static_cast<double>(avio_tell(m_io)) / static_cast<double>(m_size), 0.0, 1.0);
}

int AudioInput::readPacket(void* self, std::uint8_t* buffer, int size) {
    const auto* input = static_cast<AudioInput*>(self);
    ssize_t got = 0;
    do {
        got = ::read(input->m_fd, buffer, static_cast<std::size_t>(size));
    } while (got < 0 && errno == EINTR);
    if (got == 0)
        return AVERROR_EOF;
    return got < 0 ? AVERROR(errno) : static_cast<int>(got);
}

std::int64_t AudioInput::seek(void* self, std::int64_t offset, int whence) {
    const auto* input = static_cast<AudioInput*>(self);
    if ((whence & AVSEEK_SIZE) != 0)
        return input->m_size;
    const off_t position = ::lseek(input->m_fd, offset, whence & ~AVSEEK_FORCE);
    return position < 0 ? AVERROR(errno) : position;
}

} // namespace corvane
