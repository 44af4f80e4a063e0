// Decodes any audio or movie file to 16 kHz mono, as a stream: the first stage of a run. Blocking; one call per thread.
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

namespace corvane {

struct DecodedAudio {
    std::int64_t sampleCount = 0; // at 16 kHz
    QStringList notes;            // what a careful reader of the log wants to know: damaged packets, a cut end
};

// Gets the samples in order, in blocks of any size above zero.
using SampleSink = std::function<void(std::span<const std::int16_t>)>;
// Gets the decoded fraction, 0.0 to 1.0, now and then.
using DecodeProgress = std::function<void(double)>;

// Damaged packets are skipped, and a gap in the time stamps becomes silence, so that a time in the samples is a time in
// the file. Several channels are mixed to one by FFmpeg's rules for the layout. Nothing but the file itself is opened:
// no further file that a playlist names, no network. Throws WorkerError if the file is not a regular file, cannot be
// read, holds no sound or none that can be decoded; passes on what the sink throws.
DecodedAudio decodeAudio(const QString& path, const SampleSink& sink, const DecodeProgress& progress);

// Where the sound of a run comes from.
class AudioSource {
public:
    virtual ~AudioSource() = default;

    // As decodeAudio() does it.
    virtual DecodedAudio decode(const QString& path, const SampleSink& sink, const DecodeProgress& progress) = 0;
};

// By decodeAudio().
[[nodiscard]] std::unique_ptr<AudioSource> mediaFileSource();

} // namespace corvane
