#include "CorvaneWorker/Audio/SampleStore.h"

#include "CorvaneWorker/WorkerError.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace corvane {

namespace {

[[noreturn]] void failWriting(int error) {
    if (error == ENOSPC || error == EDQUOT)
        throw WorkerError(QStringLiteral("There is no room left on the disk to decode the recording."));
    throw WorkerError(QStringLiteral("Corvane could not store the decoded sound: %1.").arg(qt_error_string(error)));
}

int openUnnamedFile(const QByteArray& directory) {
    const int fd = ::open(directory.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (fd >= 0)
        return fd;
    // Not every file system has files without a name.
    QByteArray name = directory + "/.sound-XXXXXX";
    const int named = ::mkostemp(name.data(), O_CLOEXEC);
    if (named >= 0)
        ::unlink(name.constData());
    return named;
}

} // namespace

SampleStore::SampleStore(const QString& directory) : m_fd(openUnnamedFile(QFile::encodeName(directory))) {
    if (m_fd < 0)
        failWriting(errno);
}

SampleStore::~SampleStore() {
    ::close(m_fd);
}

void SampleStore::append(std::span<const std::int16_t> samples) {
    const auto bytes = std::as_bytes(samples);
    auto offset = m_sampleCount * static_cast<std::int64_t>(sizeof(std::int16_t));
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t written = ::pwrite(m_fd, bytes.data() + done, bytes.size() - done, offset);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            failWriting(written < 0 ? errno : ENOSPC);
        done += static_cast<std::size_t>(written);
        offset += written;
    }
    m_sampleCount += static_cast<std::int64_t>(samples.size());
}

std::vector<std::int16_t> SampleStore::read(std::int64_t first, std::int64_t count) const {
    const std::int64_t begin = std::clamp<std::int64_t>(first, 0, m_sampleCount);
    const std::int64_t end = std::clamp<std::int64_t>(first + count, begin, m_sampleCount);
    std::vector<std::int16_t> samples(static_cast<std::size_t>(end - begin));
    const auto bytes = std::as_writable_bytes(std::span(samples));
    const auto offset = begin * static_cast<std::int64_t>(sizeof(std::int16_t));
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t got = ::pread(m_fd, bytes.data() + done, bytes.size() - done, offset + static_cast<off_t>(done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            throw WorkerError(QStringLiteral("Corvane could not read back the decoded sound."));
        done += static_cast<std::size_t>(got);
    }
    return samples;
}

} // namespace corvane
