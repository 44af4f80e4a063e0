#include "CorvaneCore/Recording/AudioFileMixer.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Recording/MonoStream.h"
#include "CorvaneCore/Recording/RenderAhead.h"

#include <QFileInfo>

#include <algorithm>
#include <memory>
#include <thread>
#include <vector>

namespace corvane {

namespace {

// Long enough that neither the start of a resampler nor a write costs anything beside it: 11 s of sound, 2 MB.
constexpr std::size_t stretchFrames = 512 * 1024;
// Fits the cache of a core.
constexpr std::size_t blockFrames = 16 * 1024;
// More would only wait for the disk, and each holds stretches in memory.
constexpr unsigned mostRenderers = 4;

double durationSeconds(const AudioFileReader& reader) {
    return static_cast<double>(reader.frameCount()) / static_cast<double>(reader.format().sampleRate);
}

// The two sources, opened once more for each thread that renders.
class Sources {
public:
    Sources(AudioFiles& files, const QString& primary, const QString& secondary)
        : m_first(files.open(primary)),
          m_second(files.open(secondary)),
          m_firstStream(files, *m_first, AudioFileMixer::format.sampleRate),
          m_secondStream(files, *m_second, AudioFileMixer::format.sampleRate),
          m_block(blockFrames) {}

    [[nodiscard]] double seconds() const { return std::max(durationSeconds(*m_first), durationSeconds(*m_second)); }
    [[nodiscard]] bool seekAnywhere() const { return m_firstStream.seeksAnywhere() && m_secondStream.seeksAnywhere(); }

    void render(std::size_t start, std::span<float> mixed) {
        m_firstStream.seek(static_cast<std::int64_t>(start));
        m_secondStream.seek(static_cast<std::int64_t>(start));
        for (std::size_t done = 0; done < mixed.size();) {
            const auto a = mixed.subspan(done, std::min(blockFrames, mixed.size() - done));
            const auto b = std::span(m_block).first(a.size());
            fill(m_firstStream, a);
            fill(m_secondStream, b);
            for (std::size_t i = 0; i < a.size(); ++i)
                a[i] = (a[i] + b[i]) * AudioFileMixer::outputVolume;
            done += a.size();
        }
    }

private:
    // Behind the end of the shorter source there is silence.
    static void fill(MonoStream& stream, std::span<float> samples) {
        std::ranges::fill(samples.subspan(stream.read(samples)), 0.0F);
    }

    std::unique_ptr<AudioFileReader> m_first;
    std::unique_ptr<AudioFileReader> m_second;
    MonoStream m_firstStream;
    MonoStream m_secondStream;
    std::vector<float> m_block;
};

// As many as there are processors, but one where a stretch must be rendered behind the one before it.
std::size_t rendererCount(const Sources& sources, std::size_t total) {
    if (!sources.seekAnywhere() || total <= stretchFrames)
        return 1;
    return std::clamp(std::thread::hardware_concurrency(), 1U, mostRenderers);
}

} // namespace

AudioFileMixError AudioFileMixError::noInputs() {
    return AudioFileMixError(UserText::tr("No audio files were available to mix."));
}

AudioFileMixError AudioFileMixError::renderingFailed(const QString& reason) {
    return AudioFileMixError(UserText::tr("Audio mix failed: %1").arg(reason));
}

QString AudioFileMixer::mix(AudioFiles& files, const QString& primary, const QString& secondary, const QString& output,
                            const AudioProgress& progress) {
    std::vector<std::unique_ptr<Sources>> sources;
    sources.push_back(std::make_unique<Sources>(files, primary, secondary));
    const double duration = sources.front()->seconds();
    if (!(duration > 0))
        throw AudioFileMixError::noInputs();
    createPrivateDirectory(QFileInfo(output).absolutePath());
    const auto file = files.create(output, format);

    const auto total = static_cast<std::size_t>(duration * static_cast<double>(format.sampleRate));
    while (sources.size() < rendererCount(*sources.front(), total))
        sources.push_back(std::make_unique<Sources>(files, primary, secondary));
    std::vector<RenderAhead::Renderer> renderers;
    renderers.reserve(sources.size());
    for (const auto& each : sources)
        renderers.emplace_back([&each](std::size_t start, std::span<float> mixed) { each->render(start, mixed); });

    RenderAhead rendered(std::move(renderers), stretchFrames, total);
    std::size_t done = 0;
    for (auto mixed = rendered.next(); !mixed.empty(); mixed = rendered.next()) {
        if (!file->write(std::as_bytes(mixed).data(), mixed.size()))
            throw AudioFileMixError::renderingFailed(UserText::tr("the disk took no more."));
        done += mixed.size();
        if (progress)
            progress(static_cast<double>(done) / static_cast<double>(total));
    }
    file->close();
    return output;
}

} // namespace corvane
