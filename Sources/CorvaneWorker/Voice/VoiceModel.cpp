#include "CorvaneWorker/Voice/VoiceModel.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneWorker/Models/ModelPlaces.h"
#include "CorvaneWorker/Speech/FrameLevels.h"
#include "CorvaneWorker/Voice/SpeechTimeline.h"
#include "CorvaneWorker/Voice/VoiceTable.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>

namespace corvane {

namespace {

using Index = Eigen::Index;

constexpr std::int64_t blockFrames = 2000; // measured at a time, so that memory stays bounded
constexpr Index normalisedFrames = 300;    // the mean over these is taken away: what the network was trained with
constexpr float leastVariance = 1e-10F;
constexpr unsigned mostThreads = 4;

QByteArray readModelFile(const QString& directory, const char* name) {
    const auto bytes = readFile(directory + QLatin1Char('/') + QLatin1String(name));
    if (!bytes)
        throw ModelError(QStringLiteral("%1 is missing").arg(QLatin1String(name)));
    return *bytes;
}

// Consecutive windows, first to before last, with all of their speech on one part of the timeline.
struct Block {
    std::size_t first;
    std::size_t last;
    FrameRange timeline;
};

std::vector<Block> blocksOf(std::span<const FrameRange> windows) {
    std::vector<Block> blocks;
    for (std::size_t first = 0, last = 0; first < windows.size(); first = last) {
        FrameRange whole = windows[first];
        for (; last < windows.size() && (last == first || windows[last].end - whole.begin <= blockFrames); ++last)
            whole.end = std::max(whole.end, windows[last].end);
        blocks.push_back({first, last, whole});
    }
    return blocks;
}

FrameMatrix featuresOf(const TelephoneFeatures& features, const SampleStore& samples,
                       std::span<const FrameRange> ranges) {
    constexpr std::int64_t margin = TelephoneFeatures::marginSamples;
    std::int64_t count = 0;
    for (const FrameRange& range : ranges)
        count += range.length();
    FrameMatrix result(count, telephoneCepstra);
    Index row = 0;
    for (const FrameRange& range : ranges) {
        // Beyond both ends of the recording there is silence.
        std::vector<std::int16_t> sound(static_cast<std::size_t>(range.length() * frameSamples + 2 * margin), 0);
        const std::int64_t first = range.begin * frameSamples - margin;
        const auto read = samples.read(std::max<std::int64_t>(0, first),
                                       static_cast<std::int64_t>(sound.size()) + std::min<std::int64_t>(0, first));
        std::copy(read.begin(), read.end(), sound.begin() + std::max<std::int64_t>(0, -first));
        result.middleRows(row, range.length()) = features.compute(sound);
        row += range.length();
    }
    return result;
}

// Rows [begin, end) less the mean over the frames around each, and `padding` rows more at either side: further ones of
// the recording, or the outermost again.
FrameMatrix normalised(const FrameMatrix& features, Index begin, Index end, Index padding) {
    FrameMatrix result(end - begin + 2 * padding, features.cols());
    Eigen::MatrixXd sums = Eigen::MatrixXd::Zero(features.rows() + 1, features.cols());
    for (Index row = 0; row < features.rows(); ++row)
        sums.row(row + 1) = sums.row(row) + features.row(row).cast<double>();
    const Index width = std::min(normalisedFrames, features.rows());
    for (Index row = 0; row < result.rows(); ++row) {
        const Index own = std::clamp<Index>(begin - padding + row, 0, features.rows() - 1);
        const Index first = std::clamp<Index>(own - normalisedFrames / 2, 0, features.rows() - width);
        const Eigen::RowVectorXd mean = (sums.row(first + width) - sums.row(first)) / static_cast<double>(width);
        result.row(row) = features.row(own) - mean.cast<float>();
    }
    return result;
}

// Runs `work` for 0 to count - 1, on as many threads as pay; the first failure is thrown when all have ended.
void inParallel(std::size_t count, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next = 0;
    std::exception_ptr failure;
    std::mutex mutex;
    const auto run = [&] {
        try {
            for (std::size_t index = next++; index < count; index = next++)
                work(index);
        } catch (...) {
            const std::lock_guard lock(mutex);
            failure = std::current_exception();
            next = count;
        }
    };
    const std::size_t threads =
        std::min<std::size_t>(count, std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads));
    std::vector<std::jthread> others;
    for (std::size_t thread = 1; thread < threads; ++thread)
        others.emplace_back(run);
    run();
    others.clear();
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace

VoiceModel::VoiceModel(const QString& directory)
    : m_network(parseKaldiNetwork(readModelFile(directory, "final.ext.raw"))),
      m_mean(parseKaldiVector(readModelFile(directory, "mean.vec"))) {
    if (m_mean.size() != networkVectorSize || m_network.vectorSize() != networkVectorSize)
        throw ModelError(QStringLiteral("its files do not belong together"));
}

namespace {

// The mean and the deviation of the outputs over each part.
void pool(const FrameMatrix& outputs, std::span<const FrameRange> parts, std::int64_t begin, FrameMatrix& means,
          FrameMatrix& deviations) {
    means = FrameMatrix::Zero(static_cast<Index>(parts.size()), outputs.cols());
    deviations = means;
    for (std::size_t index = 0; index < parts.size(); ++index) {
        if (parts[index].length() == 0)
            continue;
        const auto row = static_cast<Index>(index);
        const auto own = outputs.middleRows(parts[index].begin - begin, parts[index].length());
        means.row(row) = own.colwise().mean();
        deviations.row(row) = (own.rowwise() - means.row(row)).colwise().squaredNorm() / parts[index].length();
    }
    deviations = deviations.cwiseMax(leastVariance).cwiseSqrt();
}

} // namespace

FrameMatrix VoiceModel::measure(const SampleStore& samples, std::span<const FrameRange> speech,
                                std::span<const FrameRange> windows,
                                const std::function<void(double)>& progress) const {
    const SpeechTimeline timeline(speech);
    std::vector<FrameRange> parts;
    parts.reserve(windows.size());
    for (const FrameRange& window : windows)
        parts.push_back({timeline.before(window.begin), timeline.before(window.end)});
    const auto blocks = blocksOf(parts);
    FrameMatrix result = FrameMatrix::Zero(static_cast<Index>(windows.size()), m_network.vectorSize());
    std::mutex mutex;
    std::size_t done = 0;
    inParallel(blocks.size(), [&](std::size_t number) {
        const Block& block = blocks[number];
        const auto own = std::span(parts).subspan(block.first, block.last - block.first);
        const FrameMatrix vectors = measureBlock(samples, timeline, block.timeline, own);
        const std::lock_guard lock(mutex);
        for (std::size_t index = 0; index < own.size(); ++index)
            if (own[index].length() > 0)
                result.row(static_cast<Index>(block.first + index)) = vectors.row(static_cast<Index>(index)) - m_mean;
        progress(static_cast<double>(++done) / static_cast<double>(blocks.size()));
    });
    return result;
}

FrameMatrix VoiceModel::measureBlock(const SampleStore& samples, const SpeechTimeline& timeline, FrameRange block,
                                     std::span<const FrameRange> parts) const {
    if (block.length() == 0)
        return FrameMatrix::Zero(static_cast<Index>(parts.size()), m_network.vectorSize());
    const Index reach = m_network.reach();
    const FrameRange needed{std::max<std::int64_t>(0, block.begin - normalisedFrames - reach),
                            std::min(timeline.length(), block.end + normalisedFrames + reach)};
    const FrameMatrix features = featuresOf(m_features, samples, timeline.inRecording(needed));
    const FrameMatrix outputs =
        m_network.frameOutputs(normalised(features, block.begin - needed.begin, block.end - needed.begin, reach));
    FrameMatrix means;
    FrameMatrix deviations;
    pool(outputs, parts, block.begin, means, deviations);
    return m_network.vectors(means, deviations);
}

const InstalledVoiceModel& installedVoiceModel() {
    static const InstalledVoiceModel installed = [] {
        InstalledVoiceModel result;
        const QString directory = findModel(QStringLiteral("voice/xvector-8khz"));
        try {
            if (!directory.isEmpty())
                result.model = std::make_unique<const VoiceModel>(directory);
            else
                result.note =
                    QStringLiteral("The voice model is not installed: voices are told apart by plainer means.");
        } catch (const ModelError& error) {
            result.note = QStringLiteral("The voice model in %1 cannot be used because %2: voices are told apart by "
                                         "plainer means.")
                              .arg(directory, error.text());
        }
        return result;
    }();
    return installed;
}

} // namespace corvane
