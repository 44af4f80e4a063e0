#include "CorvaneCore/Recording/MonoStream.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
#include <utility>

namespace corvane {

namespace {

constexpr std::size_t blockFrames = 8192;
// What a resampler has to hear before its output no longer depends on what came before, in samples of the lower rate.
// From 128 on, seams differ from a single pass by no more than its own rounding.
constexpr std::int64_t warmUpFrames = 1024;

// The little-endian bytes of one sample.
void encodeSample(float value, AudioFormat::Sample type, std::byte* target) {
    if (type == AudioFormat::Sample::float32) {
        std::memcpy(target, &value, sizeof value);
        return;
    }
    const double scaled = std::clamp(static_cast<double>(value), -1.0, 1.0) * 2147483647.0;
    const auto full = static_cast<std::uint32_t>(static_cast<std::int32_t>(std::lround(scaled)));
    switch (type) {
    case AudioFormat::Sample::unsigned8:
        target[0] = static_cast<std::byte>((full >> 24) ^ 0x80U);
        break;
    case AudioFormat::Sample::signed16:
        target[0] = static_cast<std::byte>(full >> 16);
        target[1] = static_cast<std::byte>(full >> 24);
        break;
    case AudioFormat::Sample::signed24:
        target[0] = static_cast<std::byte>(full >> 8);
        target[1] = static_cast<std::byte>(full >> 16);
        target[2] = static_cast<std::byte>(full >> 24);
        break;
    default:
        std::memcpy(target, &full, sizeof full);
        break;
    }
}

void averageChannels(const float* interleaved, std::size_t channels, std::span<float> mono) {
    if (channels == 2) { // nearly always
        for (std::size_t frame = 0; frame < mono.size(); ++frame)
            mono[frame] = (interleaved[2 * frame] + interleaved[2 * frame + 1]) * 0.5F;
        return;
    }
    const float scale = 1.0F / static_cast<float>(channels);
    for (float& sample : mono) {
        float sum = 0;
        for (std::size_t channel = 0; channel < channels; ++channel)
            sum += *interleaved++;
        sample = sum * scale;
    }
}

} // namespace

MonoStream::MonoStream(AudioFiles& files, AudioFileReader& reader, int sampleRate)
    : m_files(files),
      m_reader(reader),
      m_sampleRate(sampleRate),
      m_channels(static_cast<std::size_t>(reader.format().channels)),
      m_interleaved(m_channels > 1 ? blockFrames * m_channels : 0) {
    const int fileRate = reader.format().sampleRate;
    if (fileRate == sampleRate)
        return;
    m_resampler = files.resampler(fileRate, sampleRate);
    m_pending.resize(blockFrames);
    const int common = std::gcd(fileRate, sampleRate);
    m_period = {.input = fileRate / common, .output = sampleRate / common};
}

void MonoStream::seek(std::int64_t position) {
    // A resampler starts anew also where it has come to of itself, so that the samples do not tell where that was.
    if (position == std::exchange(m_position, position) && (!m_resampler || !seeksAnywhere()))
        return;
    if (!m_resampler) {
        m_reader.seek(std::min(position, m_reader.frameCount()));
        return;
    }
    const std::int64_t downsampling = std::max<std::int64_t>(1, m_period.input / m_period.output + 1);
    const std::int64_t warmUpPeriods = warmUpFrames * downsampling / m_period.input + 1;
    const std::int64_t firstPeriod = std::max<std::int64_t>(0, position / m_period.output - warmUpPeriods);
    m_reader.seek(std::min(firstPeriod * m_period.input, m_reader.frameCount()));
    m_resampler = m_files.resampler(m_reader.format().sampleRate, m_sampleRate);
    m_pendingCount = 0;
    m_inputEnded = false;
    m_skipped = position - firstPeriod * m_period.output;
}

std::size_t MonoStream::read(std::span<float> samples) {
    m_position += static_cast<std::int64_t>(samples.size());
    if (!m_resampler)
        return readMono(samples);
    while (m_skipped > 0) {
        const auto wanted = static_cast<std::size_t>(m_skipped);
        const std::size_t dropped = readResampled(samples.first(std::min(wanted, samples.size())));
        if (dropped == 0)
            return 0;
        m_skipped -= static_cast<std::int64_t>(dropped);
    }
    return readResampled(samples);
}

std::size_t MonoStream::readResampled(std::span<float> samples) {
    std::size_t filled = 0;
    while (filled < samples.size()) {
        if (m_pendingCount == 0 && !m_inputEnded) {
            m_pendingStart = 0;
            m_pendingCount = readMono(m_pending);
            m_inputEnded = m_pendingCount == 0;
        }
        const auto input = std::span<const float>(m_pending).subspan(m_pendingStart, m_pendingCount);
        const auto step = m_resampler->process(input, samples.subspan(filled));
        m_pendingStart += step.consumed;
        m_pendingCount -= step.consumed;
        filled += step.produced;
        if (m_inputEnded && step.produced == 0)
            break;
    }
    return filled;
}

std::size_t MonoStream::readMono(std::span<float> samples) {
    std::size_t filled = 0;
    while (filled < samples.size()) {
        if (m_channels == 1) {
            const std::size_t frames = m_reader.readFloat(samples.subspan(filled));
            if (frames == 0)
                break;
            filled += frames;
            continue;
        }
        const std::size_t wanted = std::min(blockFrames, samples.size() - filled);
        const std::size_t frames = m_reader.readFloat(std::span(m_interleaved).first(wanted * m_channels));
        if (frames == 0)
            break;
        averageChannels(m_interleaved.data(), m_channels, samples.subspan(filled, frames));
        filled += frames;
    }
    return filled;
}

std::vector<std::byte> encodeSamples(std::span<const float> samples, const AudioFormat& format) {
    const std::size_t width = format.bytesPerSample();
    std::vector<std::byte> bytes(samples.size() * width);
    std::byte* target = bytes.data();
    for (const float sample : samples) {
        encodeSample(sample, format.sample, target);
        target += width;
    }
    return bytes;
}

std::vector<float> spreadMono(std::span<const float> samples, int channels) {
    std::vector<float> frames;
    frames.reserve(samples.size() * static_cast<std::size_t>(channels));
    for (const float sample : samples)
        frames.insert(frames.end(), static_cast<std::size_t>(channels), sample);
    return frames;
}

} // namespace corvane
