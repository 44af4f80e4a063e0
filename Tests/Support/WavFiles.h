// WAV files as tests make them and look at them. Failures are thrown.
#pragma once

#include "CorvanePlatform/Linux/Audio/SndfileAudioFiles.h"

#include <span>
#include <vector>

namespace corvane {

template<typename Sample>
void writeWav(const QString& path, const AudioFormat& format, const std::vector<Sample>& samples) {
    const auto writer = SndfileAudioFiles().create(path, format);
    if (!writer->write(std::as_bytes(std::span(samples)).data(),
                       samples.size() * sizeof(Sample) / format.bytesPerFrame()))
        throw AudioFileError(path);
    writer->close();
}

// The samples as they stand in the file, whose format has to be of that type.
template<typename Sample>
[[nodiscard]] std::vector<Sample> readWav(const QString& path) {
    const auto reader = SndfileAudioFiles().open(path);
    const auto channels = static_cast<std::size_t>(reader->format().channels);
    std::vector<Sample> samples(static_cast<std::size_t>(reader->frameCount()) * channels);
    const auto bytes = std::as_writable_bytes(std::span(samples));
    std::size_t done = 0;
    while (const std::size_t frames = reader->readRaw(bytes.subspan(done * sizeof(Sample))))
        done += frames * channels;
    samples.resize(done);
    return samples;
}

} // namespace corvane
