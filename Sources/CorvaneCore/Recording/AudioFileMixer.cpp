#include "CorvaneCore/Recording/AudioFileMixer.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneCore/Recording/MonoStream.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <future>

namespace corvane {

namespace {

// Long enough that handing a block to another thread costs nothing against rendering it.
constexpr std::size_t blockFrames = 64 * 1024;

double durationSeconds(const AudioFileReader& reader) {
    return static_cast<double>(reader.frameCount()) / static_cast<double>(reader.format().sampleRate);
}

// A source as blocks of mono sound, of which the next is always being rendered on a thread of its own while the present
// one is used. Behind its end there is silence.
class RenderedSource {
public:
    RenderedSource(AudioFiles& files, AudioFileReader& reader)
        : m_stream(files, reader, AudioFileMixer::format.sampleRate), m_present(blockFrames), m_next(blockFrames) {
        renderNext();
    }

    const std::vector<float>& block() {
        m_rendering.get();
        std::swap(m_present, m_next);
        renderNext();
        return m_present;
    }

private:
    void renderNext() {
        m_rendering = std::async(std::launch::async, [this] {
            const std::size_t filled = m_stream.read(m_next);
            std::fill(m_next.begin() + static_cast<std::ptrdiff_t>(filled), m_next.end(), 0.0F);
        });
    }

    MonoStream m_stream;
    std::vector<float> m_present;
    std::vector<float> m_next;
    std::future<void> m_rendering; // waits for the thread when destroyed, before what the thread uses goes
};

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

    RenderedSource firstSource(files, *first);
    RenderedSource secondSource(files, *second);
    const auto total = static_cast<std::size_t>(duration * static_cast<double>(format.sampleRate));
    std::vector<float> mixed(blockFrames);
    for (std::size_t done = 0; done < total;) {
        const std::size_t count = std::min(blockFrames, total - done);
        const std::vector<float>& a = firstSource.block();
        const std::vector<float>& b = secondSource.block();
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
