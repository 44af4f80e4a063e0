#include "CorvanePlatform/Linux/Audio/WavHeader.h"

#include <algorithm>
#include <limits>

namespace corvane {

namespace {

constexpr std::uint64_t largest32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t tagAndLength = 8;
constexpr int lengths64Bytes = 28;
constexpr int formatBytes = 16;
constexpr int formatTagInteger = 1;
constexpr int formatTagFloat = 3;

} // namespace

WavHeader::WavHeader(const AudioFormat& format, std::uint64_t dataBytes) {
    const bool isFloat = format.sample == AudioFormat::Sample::float32;
    const std::uint64_t headerBytes = m_bytes.size() - (isFloat ? 0 : tagAndLength + 4);
    // Chunks have an even length on the disk; the byte that evens the samples out is not part of their own length.
    const std::uint64_t riffBytes = headerBytes - tagAndLength + dataBytes + dataBytes % 2;
    const std::uint64_t frames = dataBytes / format.bytesPerFrame();
    const bool isLarge = riffBytes > largest32;

    tag(isLarge ? "RF64" : "RIFF");
    number(isLarge ? largest32 : riffBytes, 4);
    tag("WAVE");
    tag(isLarge ? "ds64" : "JUNK");
    number(lengths64Bytes, 4);
    if (isLarge)
        lengths64(riffBytes, dataBytes, frames);
    else
        m_length += lengths64Bytes;

    tag("fmt ");
    number(formatBytes, 4);
    number(isFloat ? formatTagFloat : formatTagInteger, 2);
    number(static_cast<std::uint64_t>(format.channels), 2);
    number(static_cast<std::uint64_t>(format.sampleRate), 4);
    number(static_cast<std::uint64_t>(format.sampleRate) * format.bytesPerFrame(), 4);
    number(format.bytesPerFrame(), 2);
    number(format.bytesPerSample() * 8, 2);
    if (isFloat) {
        tag("fact");
        number(4, 4);
        number(std::min(frames, largest32), 4);
    }
    tag("data");
    number(isLarge ? largest32 : dataBytes, 4);
}

void WavHeader::tag(const char* name) {
    for (int i = 0; i < 4; ++i)
        m_bytes[m_length++] = static_cast<std::byte>(name[i]);
}

void WavHeader::number(std::uint64_t value, int byteCount) {
    for (int i = 0; i < byteCount; ++i)
        m_bytes[m_length++] = static_cast<std::byte>(value >> (8 * i));
}

void WavHeader::lengths64(std::uint64_t riffBytes, std::uint64_t dataBytes, std::uint64_t frames) {
    number(riffBytes, 8);
    number(dataBytes, 8);
    number(frames, 8);
    number(0, 4); // no table of further long chunks
}

} // namespace corvane
