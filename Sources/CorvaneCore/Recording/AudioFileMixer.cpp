#include "CorvaneCore/Recording/AudioFileMixer.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneCore/Recording/RenderAhead.h"

#include <QFileInfo>

#include <algorithm>
#include <vector>

namespace corvane {

namespace {

// Fits the cache of a core, and is long enough that writing it costs little.
constexpr std::size_t blockFrames = 64 * 1024;

double durationSeconds(const AudioFileReader& reader) {
    return static_cast<double>(reader.frameCount()) / static_cast<double>(reader.format().sampleRate);
}

} // namespace

AudioFileMixError AudioFileMixError::noInputs() {
    return AudioFileMixError(QStringLiteral("No audio files were available to mix."));
}

AudioFileMixError AudioFileMixError::renderingFailed(const QString& reason) {
    return AudioFileMixError(QStringLiteral("Audio mix failed: ") + reason);
}

QString AudioFileMixer::mix(AudioFiles& files, const QString& primary, const QString& secondary, const QString& output,
                            const AudioProgress& progress) {
    const auto first = files.open(primary);
    const auto second = files.open(secondary);
    const double duration = std::max(durationSeconds(*first), durationSeconds(*second));
    if (!(duration > 0))
        throw AudioFileMixError::noInputs();
    createPrivateDirectory(QFileInfo(output).absolutePath());
    const auto file = files.create(output, format);

    MonoStream firstStream(files, *first, format.sampleRate);
    MonoStream secondStream(files, *second, format.sampleRate);
    RenderAhead firstSource(firstStream, blockFrames);
    RenderAhead secondSource(secondStream, blockFrames);
    const auto total = static_cast<std::size_t>(duration * static_cast<double>(format.sampleRate));
    std::vector<float> mixed(blockFrames);
    for (std::size_t done = 0; done < total;) {
        const std::size_t count = std::min(blockFrames, total - done);
        const std::vector<float>& a = firstSource.next();
        const std::vector<float>& b = secondSource.next();
        for (std::size_t i = 0; i < count; ++i)
            mixed[i] = (a[i] + b[i]) * outputVolume;
        if (!file->write(std::as_bytes(std::span(mixed)).data(), count))
            throw AudioFileMixError::renderingFailed(QStringLiteral("the disk took no more."));
        done += count;
        if (progress)
            progress(static_cast<double>(done) / static_cast<double>(total));
    }
    file->close();
    return output;
}

} // namespace corvane
