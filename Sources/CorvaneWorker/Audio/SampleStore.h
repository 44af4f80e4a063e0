// The sound of a recording as 16 kHz mono 16-bit samples, in a temporary file that has no name and vanishes with this
// object, so that memory does not grow with the recording. Written by one thread; then read from any thread.
#pragma once

#include <QString>

#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

inline constexpr int sampleRate = 16000; // of everything behind the decoder

[[nodiscard]] inline double secondsOfSamples(std::int64_t samples) {
    return static_cast<double>(samples) / sampleRate;
}

class SampleStore {
public:
    // The file lies in `directory`. Throws WorkerError.
    explicit SampleStore(const QString& directory);
    ~SampleStore();
    SampleStore(const SampleStore&) = delete;
    SampleStore& operator=(const SampleStore&) = delete;

    // Throws WorkerError, for example when the disk is full.
    void append(std::span<const std::int16_t> samples);

    [[nodiscard]] std::int64_t sampleCount() const { return m_sampleCount; }

    // The samples of [first, first + count), cut at both ends of the recording. Throws WorkerError.
    [[nodiscard]] std::vector<std::int16_t> read(std::int64_t first, std::int64_t count) const;

private:
    int m_fd = -1;
    std::int64_t m_sampleCount = 0;
};

} // namespace corvane
