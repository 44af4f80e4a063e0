#include "CorvaneWorker/Voice/VoiceModel.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneWorker/Models/ModelPlaces.h"
#include "CorvaneWorker/Speech/FrameLevels.h"
#include "CorvaneWorker/Voice/SpeechTimeline.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>

namespace corvane {

namespace {

using Index = Eigen::Index;

constexpr std::int64_t blockFrames = 2000; // measured at a time, so that memory stays bounded
Index normalisedFrames = 300;    // the mean over these is taken away: what the network was trained with
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
    const std::size_t threads = std::min<std::size_t>(
        count, std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads));
    std::vector<std::jthread> others;
    for (std::size_t thread = 1; thread < threads; ++thread)
        others.emplace_back(run);
    run();
    others.clear();
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace

std::unique_ptr<VoiceModel> VoiceModel::load(QString& note) {
    const QString directory = findModel(QStringLiteral("voice/xvector-8khz"));
    if (directory.isEmpty()) {
        note = QStringLiteral("The voice model is not installed: speakers are told apart by plainer means.");
        return nullptr;
    }
    try {
        return std::make_unique<VoiceModel>(directory);
    } catch (const ModelError& error) {
        note = QStringLiteral("The voice model in %1 cannot be used, because %2: speakers are told apart by plainer "
                              "means.")
                   .arg(directory, error.text());
        return nullptr;
    }
}

VoiceModel::VoiceModel(const QString& directory)
    : m_network(parseKaldiNetwork(readModelFile(directory, "final.ext.raw"))),
      m_mean(parseKaldiVector(readModelFile(directory, "mean.vec"))) {
    if (m_mean.size() != m_network.vectorSize())
        throw ModelError(QStringLiteral("its files do not belong together"));
    if (const char* value = getenv("CMN")) normalisedFrames = atoi(value);
}

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
        const Index reach = m_network.reach();
        const std::int64_t margin = normalisedFrames + reach;
        const FrameRange needed{std::max<std::int64_t>(0, block.timeline.begin - margin),
                                std::min(timeline.length(), block.timeline.end + margin)};
        if (block.timeline.length() > 0) {
            const FrameMatrix features = featuresOf(m_features, samples, timeline.inRecording(needed));
            const FrameMatrix outputs = m_network.frameOutputs(
                normalised(features, block.timeline.begin - needed.begin, block.timeline.end - needed.begin, reach));
            const auto count = static_cast<Index>(block.last - block.first);
            FrameMatrix means = FrameMatrix::Zero(count, outputs.cols());
            FrameMatrix deviations = means;
            for (Index row = 0; row < count; ++row) {
                const FrameRange& part = parts[block.first + static_cast<std::size_t>(row)];
                if (part.length() == 0)
                    continue;
                const auto own = outputs.middleRows(part.begin - block.timeline.begin, part.length());
                means.row(row) = own.colwise().mean();
                deviations.row(row) = (own.rowwise() - means.row(row)).colwise().squaredNorm() / part.length();
            }
            deviations = deviations.cwiseMax(1e-10F).cwiseSqrt();
            const FrameMatrix vectors = m_network.vectors(means, deviations);
            for (Index row = 0; row < count; ++row)
                if (parts[block.first + static_cast<std::size_t>(row)].length() > 0)
                    result.row(static_cast<Index>(block.first) + row) = vectors.row(row) - m_mean;
        }
        const std::lock_guard lock(mutex);
        progress(static_cast<double>(++done) / static_cast<double>(blocks.size()));
    });
    return result;
}

} // namespace corvane
