#include "CorvaneWorker/Speech/VoiceActivityNetwork.h"

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/Models/InferenceRuntime.h"
#include "CorvaneWorker/Models/ModelPlaces.h"
#include "CorvaneWorker/Speech/FrameLevels.h"

#include <QFile>

#include <sherpa-onnx/c-api.h>

namespace corvane {

namespace {

constexpr std::size_t windowSamples = 512; // what the network takes at a time
constexpr float longestSpeechSeconds = 20.0F;
constexpr float bufferSeconds = 60.0F;

} // namespace

std::unique_ptr<VoiceActivityNetwork> VoiceActivityNetwork::load() {
    const InferenceRuntime* runtime = inferenceRuntime().functions;
    const QString file = findModel(QStringLiteral("activity/silero_vad.onnx"));
    if (runtime == nullptr || file.isEmpty())
        return nullptr;
    const QByteArray path = QFile::encodeName(file);
    SherpaOnnxVadModelConfig config{};
    config.silero_vad.model = path.constData();
    config.silero_vad.threshold = 0.5F;
    config.silero_vad.min_silence_duration = 0.25F;
    config.silero_vad.min_speech_duration = 0.1F;
    config.silero_vad.window_size = windowSamples;
    config.silero_vad.max_speech_duration = longestSpeechSeconds;
    config.sample_rate = sampleRate;
    config.num_threads = 1;
    config.provider = "cpu";
    const auto* detector = runtime->createDetector(&config, bufferSeconds);
    if (detector == nullptr)
        return nullptr;
    return std::unique_ptr<VoiceActivityNetwork>(new VoiceActivityNetwork(*runtime, detector));
}

VoiceActivityNetwork::VoiceActivityNetwork(const InferenceRuntime& runtime,
                                           const SherpaOnnxVoiceActivityDetector* detector)
    : m_runtime(runtime), m_detector(detector) {
    m_block.reserve(windowSamples);
}

VoiceActivityNetwork::~VoiceActivityNetwork() {
    m_runtime.destroyDetector(m_detector);
}

void VoiceActivityNetwork::add(std::span<const std::int16_t> samples) {
    for (const std::int16_t sample : samples) {
        m_block.push_back(static_cast<float>(sample) / 32768.0F);
        if (m_block.size() < windowSamples)
            continue;
        m_runtime.detectorAccept(m_detector, m_block.data(), static_cast<int>(m_block.size()));
        m_block.clear();
        takeSegments();
    }
}

std::vector<FrameRange> VoiceActivityNetwork::finish() {
    m_block.resize(windowSamples, 0.0F);
    m_runtime.detectorAccept(m_detector, m_block.data(), static_cast<int>(m_block.size()));
    m_block.clear();
    m_runtime.detectorFlush(m_detector);
    takeSegments();
    return std::move(m_speech);
}

void VoiceActivityNetwork::takeSegments() {
    while (m_runtime.detectorEmpty(m_detector) == 0) {
        const SherpaOnnxSpeechSegment* segment = m_runtime.detectorFront(m_detector);
        const FrameRange range{segment->start / frameSamples, (segment->start + segment->n) / frameSamples};
        m_runtime.destroySegment(segment);
        m_runtime.detectorPop(m_detector);
        // What lasts too long for the library comes in pieces.
        if (!m_speech.empty() && range.begin <= m_speech.back().end)
            m_speech.back().end = std::max(m_speech.back().end, range.end);
        else
            m_speech.push_back(range);
    }
}

} // namespace corvane
