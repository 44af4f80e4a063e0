#include "CorvanePlatform/Linux/Audio/SndfileReader.h"

#include "CorvaneContract/Text/UserText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

namespace {

[[noreturn]] void fail(const QString& name, const QString& reason) {
    throw AudioFileError(UserText::tr("%1: %2").arg(name, reason));
}

UniqueFd openRegularFile(const QString& path, const QString& name) {
    // Opening a FIFO would wait for a writer without O_NONBLOCK.
    UniqueFd file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (path.contains(QChar(0)) || !file || ::fstat(file.get(), &status) != 0)
        fail(name, qt_error_string(path.contains(QChar(0)) ? EINVAL : errno));
    if (!S_ISREG(status.st_mode))
        fail(name, UserText::tr("Not a regular file"));
    if (status.st_size == 0)
        fail(name, UserText::tr("The file is empty"));
    return file;
}

// With the directory: chunks of both sources have the same names.
QString nameIn(const QFileInfo& file) {
    return file.dir().dirName() + QLatin1Char('/') + file.fileName();
}

std::optional<AudioFormat::Sample> sampleOf(int format) {
    switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_U8:
        return AudioFormat::Sample::unsigned8;
    case SF_FORMAT_PCM_16:
        return AudioFormat::Sample::signed16;
    case SF_FORMAT_PCM_24:
        return AudioFormat::Sample::signed24;
    case SF_FORMAT_PCM_32:
        return AudioFormat::Sample::signed32;
    case SF_FORMAT_FLOAT:
        return AudioFormat::Sample::float32;
    default:
        return std::nullopt;
    }
}

bool isWave(int format) {
    const int container = format & SF_FORMAT_TYPEMASK;
    return container == SF_FORMAT_WAV || container == SF_FORMAT_WAVEX || container == SF_FORMAT_RF64;
}

std::int64_t sizeOf(int fd) {
    struct stat status {};
    return ::fstat(fd, &status) == 0 ? status.st_size : 0;
}

// The position of the samples if the header gives their length as none or unknown.
std::optional<std::int64_t> startOfUnfinishedSamples(int fd) {
    struct Chunk {
        std::array<char, 4> name;
        std::uint32_t length;
    } chunk{};
    constexpr std::int64_t fileHeaderBytes = 12;
    for (std::int64_t at = fileHeaderBytes; ::pread(fd, &chunk, sizeof chunk, at) == sizeof chunk;) {
        const std::uint32_t length = qFromLittleEndian(chunk.length);
        at += static_cast<std::int64_t>(sizeof chunk);
        if (std::string_view(chunk.name.data(), chunk.name.size()) == "data")
            return length == 0 || length == UINT32_MAX ? std::optional(at) : std::nullopt;
        at += std::int64_t{length} + length % 2;
    }
    return std::nullopt;
}

} // namespace

SndfileReader::SndfileReader(const QString& path)
    : m_name(nameIn(QFileInfo(path))), m_descriptor(openRegularFile(path, m_name)) {
    SF_INFO info{};
    m_file.reset(sf_open_fd(m_descriptor.get(), SFM_READ, &info, SF_FALSE));
    if (!m_file || !isWave(info.format))
        fail(m_name, UserText::tr("Not a WAV file, or its beginning is damaged"));
    const auto sample = sampleOf(info.format);
    if (!sample || (info.format & SF_FORMAT_ENDMASK) == SF_ENDIAN_BIG)
        fail(m_name, UserText::tr("A WAV file with samples of a kind that Corvane does not read"));
    m_format = {.sampleRate = info.samplerate, .channels = info.channels, .sample = *sample};
    m_frameCount = std::max<std::int64_t>(info.frames, 0);
    if (m_frameCount == 0) {
        if (const auto start = startOfUnfinishedSamples(m_descriptor.get()))
            readUnfinished(*start, info.format & SF_FORMAT_SUBMASK);
    }
}

void SndfileReader::readUnfinished(std::int64_t firstByte, int encoding) {
    SF_INFO info{};
    info.samplerate = m_format.sampleRate;
    info.channels = m_format.channels;
    info.format = SF_FORMAT_RAW | SF_ENDIAN_LITTLE | encoding;
    ::lseek(m_descriptor.get(), 0, SEEK_SET);
    m_file.reset(sf_open_fd(m_descriptor.get(), SFM_READ, &info, SF_FALSE));
    sf_count_t offset = firstByte;
    if (!m_file || sf_command(m_file.get(), SFC_SET_RAW_START_OFFSET, &offset, sizeof offset) != 0 ||
        sf_seek(m_file.get(), 0, SEEK_SET) != 0)
        fail(m_name, UserText::tr("Not a WAV file, or its beginning is damaged"));
    m_frameCount = (sizeOf(m_descriptor.get()) - firstByte) / static_cast<std::int64_t>(m_format.bytesPerFrame());
}

std::size_t SndfileReader::readRaw(std::span<std::byte> bytes) {
    const std::size_t wholeFrames = bytes.size() - bytes.size() % m_format.bytesPerFrame();
    return framesRead(sf_read_raw(m_file.get(), bytes.data(), static_cast<sf_count_t>(wholeFrames)),
                      static_cast<std::int64_t>(m_format.bytesPerFrame()));
}

std::size_t SndfileReader::readFloat(std::span<float> samples) {
    if (m_format.sample == AudioFormat::Sample::signed16)
        return readIntegers(samples);
    return framesRead(sf_read_float(m_file.get(), samples.data(), static_cast<sf_count_t>(samples.size())),
                      m_format.channels);
}

// The same values as sf_read_float gives, which reads and converts no more than 8 KiB at a time.
std::size_t SndfileReader::readIntegers(std::span<float> samples) {
    constexpr float scale = 1.0F / 32'768.0F;
    constexpr std::size_t mostSamples = 32 * 1024;
    const auto perFrame = static_cast<std::size_t>(m_format.channels);
    const std::size_t most = std::max(mostSamples / perFrame, std::size_t{1}) * perFrame;
    const std::size_t wanted = std::min(samples.size(), most);
    m_integers.resize(std::max(m_integers.size(), wanted));
    const sf_count_t count = sf_read_short(m_file.get(), m_integers.data(), static_cast<sf_count_t>(wanted));
    const std::size_t frames = framesRead(count, m_format.channels);
    std::transform(m_integers.begin(), m_integers.begin() + std::max<sf_count_t>(count, 0), samples.begin(),
                   [](std::int16_t sample) { return static_cast<float>(sample) * scale; });
    return frames;
}

void SndfileReader::seek(std::int64_t frame) {
    if (sf_seek(m_file.get(), frame, SEEK_SET) != frame)
        fail(m_name, QString::fromUtf8(sf_strerror(m_file.get())));
}

std::size_t SndfileReader::framesRead(std::int64_t count, std::int64_t perFrame) const {
    if (count < 0 || sf_error(m_file.get()) != SF_ERR_NO_ERROR)
        fail(m_name, QString::fromUtf8(sf_strerror(m_file.get())));
    return static_cast<std::size_t>(count / perFrame);
}

} // namespace corvane
