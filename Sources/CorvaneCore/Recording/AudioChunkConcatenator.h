// Joins chunk files into one, in the order of their names. Nothing is inserted, nothing is cross-faded. Stateless and
// blocking; any thread.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneCore/Interfaces/AudioFiles.h"

#include <QString>

#include <functional>
#include <vector>

namespace corvane {

// Reads as its case: "noChunks", or "unreadableChunk" with the chunk's path.
class AudioConcatenationError : public Error {
public:
    [[nodiscard]] static AudioConcatenationError noChunks();
    [[nodiscard]] static AudioConcatenationError unreadableChunk(const QString& url);

private:
    using Error::Error;
};

// The fraction done, from 0 to 1, on the calling thread.
using AudioProgress = std::function<void(double)>;

namespace AudioChunkConcatenator {

// The output has the format of the first chunk; one of another rate or channel count is converted to it. Gives
// `output`. Throws AudioConcatenationError or AudioFileError at the first chunk that cannot be read; what was written
// until then stays. Holds about a MB of audio at a time.
QString concatenate(AudioFiles& files, std::vector<QString> chunks, const QString& output,
                    const AudioProgress& progress = {});

} // namespace AudioChunkConcatenator

} // namespace corvane
