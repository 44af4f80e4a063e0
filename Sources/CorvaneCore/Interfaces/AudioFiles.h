// Audio files as the core writes and reads them. One thread at a time per file.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneCore/Interfaces/AudioFormat.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace corvane {

// text() names the file and the reason.
class AudioFileError : public Error {
public:
    using Error::Error;
};

// A WAV file that grows. What was written stays readable after the process is killed, at the latest one second after it
// was written also after a power failure, and past 4 GiB. Destruction closes it.
class AudioFileWriter {
public:
    virtual ~AudioFileWriter() = default;
    // Whole frames in the file's format. Allocates nothing. False if the disk took less than all of them; then the
    // file holds what it took and stays readable.
    [[nodiscard]] virtual bool write(const std::byte* frames, std::size_t frameCount) = 0;
    // Finishes the header and flushes to the disk. Throws AudioFileError. Nothing may follow.
    virtual void close() = 0;
};

class AudioFileReader {
public:
    virtual ~AudioFileReader() = default;
    [[nodiscard]] virtual AudioFormat format() const = 0;
    // What can really be read, also where the header promises more or nothing.
    [[nodiscard]] virtual std::int64_t frameCount() const = 0;
    // The bytes of whole frames as they stand in the file; gives the number of frames, 0 at the end. Throws
    // AudioFileError.
    [[nodiscard]] virtual std::size_t readRaw(std::span<std::byte> bytes) = 0;
    // Interleaved samples from -1 to 1; the span's size is a multiple of the channels. Likewise.
    [[nodiscard]] virtual std::size_t readFloat(std::span<float> samples) = 0;
    // The frame that the next read begins with, from 0 to frameCount(). Throws AudioFileError.
    virtual void seek(std::int64_t frame) = 0;
};

// Changes the sample rate of one channel as a stream, at a quality whose error is inaudible. The first sample that
// comes out stands at the moment of the first that went in.
class AudioResampler {
public:
    virtual ~AudioResampler() = default;
    struct Step {
        std::size_t consumed = 0;
        std::size_t produced = 0;
    };
    // An empty input flushes the end of the stream.
    [[nodiscard]] virtual Step process(std::span<const float> input, std::span<float> output) = 0;
};

class AudioFiles {
public:
    virtual ~AudioFiles() = default;
    // Replaces an existing file. Throws AudioFileError.
    [[nodiscard]] virtual std::unique_ptr<AudioFileWriter> create(const QString& path, const AudioFormat& format) = 0;
    // A WAV file. Throws AudioFileError.
    [[nodiscard]] virtual std::unique_ptr<AudioFileReader> open(const QString& path) = 0;
    [[nodiscard]] virtual std::unique_ptr<AudioResampler> resampler(int fromRate, int toRate) = 0;
};

} // namespace corvane
