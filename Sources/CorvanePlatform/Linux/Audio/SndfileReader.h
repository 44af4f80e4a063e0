// A WAV file read through libsndfile, which copes with headers that promise too much. One thread at a time.
#pragma once

#include "CorvaneCore/Interfaces/AudioFiles.h"
#include "CorvanePlatform/Linux/UniqueFd.h"

#include <sndfile.h>

#include <memory>
#include <vector>

namespace corvane {

class SndfileReader final : public AudioFileReader {
public:
    // Only a regular file with samples that AudioFormat can name. Throws AudioFileError.
    explicit SndfileReader(const QString& path);

    [[nodiscard]] AudioFormat format() const override { return m_format; }
    [[nodiscard]] std::int64_t frameCount() const override { return m_frameCount; }
    [[nodiscard]] std::size_t readRaw(std::span<std::byte> bytes) override;
    [[nodiscard]] std::size_t readFloat(std::span<float> samples) override;
    void seek(std::int64_t frame) override;

private:
    struct Close {
        void operator()(SNDFILE* file) const { sf_close(file); }
    };
    // Reads on from where the samples of a file begin whose writer ended before it could say how many there are.
    void readUnfinished(std::int64_t firstByte, int encoding);
    [[nodiscard]] std::size_t readIntegers(std::span<float> samples);
    [[nodiscard]] std::size_t framesRead(std::int64_t count, std::int64_t perFrame) const;

    QString m_name;
    UniqueFd m_descriptor;
    std::unique_ptr<SNDFILE, Close> m_file;
    AudioFormat m_format;
    std::int64_t m_frameCount = 0;
    std::vector<std::int16_t> m_integers;
};

} // namespace corvane
