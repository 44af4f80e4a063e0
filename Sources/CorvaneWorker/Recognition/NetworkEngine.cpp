#include "CorvaneWorker/Recognition/NetworkEngine.h"

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/Models/InferenceRuntime.h"
#include "CorvaneWorker/Run/Log.h"
#include "CorvaneWorker/WorkerError.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <list>
#include <numeric>
#include <sherpa-onnx/c-api.h>

namespace corvane {

namespace {

using Kind = RecognitionModel::Kind;

// The configuration of the library, with the bytes that its pointers point at.
class Configuration {
public:
    Configuration(const RecognitionModel& model, const QString& language) {
        m_config.feat_config.sample_rate = sampleRate;
        m_config.feat_config.feature_dim = 80;
        m_config.decoding_method = "greedy_search";
        auto& config = m_config.model_config;
        config.tokens = path(model.tokens);
        config.num_threads = 1; // there is a recogniser for each core
        config.provider = "cpu";
        fill(model, keep(language.toUtf8()));
    }
    Configuration(const Configuration&) = delete;
    Configuration& operator=(const Configuration&) = delete;

    [[nodiscard]] const SherpaOnnxOfflineRecognizerConfig* get() const { return &m_config; }

private:
    const char* keep(QByteArray bytes) { return m_kept.emplace_back(std::move(bytes)).constData(); }
    const char* path(const QString& file) { return keep(QFile::encodeName(file)); }

    void fill(const RecognitionModel& model, const char* language) {
        auto& config = m_config.model_config;
        switch (model.kind) {
        case Kind::Moonshine:
            config.moonshine.encoder = path(model.encoder);
            config.moonshine.merged_decoder = path(model.decoder);
            break;
        case Kind::Whisper:
            config.whisper.encoder = path(model.encoder);
            config.whisper.decoder = path(model.decoder);
            config.whisper.language = language;
            config.whisper.task = "transcribe";
            break;
        case Kind::Canary:
            config.canary.encoder = path(model.encoder);
            config.canary.decoder = path(model.decoder);
            config.canary.src_lang = language;
            config.canary.tgt_lang = language;
            config.canary.use_pnc = 1;
            break;
        case Kind::Transducer:
            config.transducer.encoder = path(model.encoder);
            config.transducer.decoder = path(model.decoder);
            config.transducer.joiner = path(model.joiner);
            break;
        case Kind::NemoCtc:
            config.nemo_ctc.model = path(model.model);
            break;
        case Kind::ZipformerCtc:
            config.zipformer_ctc.model = path(model.model);
            break;
        case Kind::WenetCtc:
            config.wenet_ctc.model = path(model.model);
            break;
        case Kind::SenseVoice:
            config.sense_voice.model = path(model.model);
            config.sense_voice.language = language;
            config.sense_voice.use_itn = 1;
            break;
        case Kind::Paraformer:
            config.paraformer.model = path(model.model);
            break;
        }
    }

    std::list<QByteArray> m_kept;
    SherpaOnnxOfflineRecognizerConfig m_config{};
};

class NetworkRecognizer : public RegionRecognizer {
public:
    NetworkRecognizer(const InferenceRuntime& runtime, const SherpaOnnxOfflineRecognizer* recognizer)
        : m_runtime(runtime), m_recognizer(recognizer) {}

    std::vector<RecognizedWord> recognize(std::span<const std::int16_t> samples, double startSeconds) override {
        constexpr std::size_t least = sampleRate / 10; // the networks cannot take less
        if (samples.size() < least)
            return {};
        std::vector<float> sound(samples.size());
        std::transform(samples.begin(), samples.end(), sound.begin(),
                       [](std::int16_t sample) { return static_cast<float>(sample) / 32768.0F; });
        const std::unique_ptr<const SherpaOnnxOfflineStream, void (*)(const SherpaOnnxOfflineStream*)> stream(
            m_runtime.createStream(m_recognizer), m_runtime.destroyStream);
        if (!stream)
            throw WorkerError(QStringLiteral("The recogniser could not take the sound."));
        m_runtime.acceptWaveform(stream.get(), sampleRate, sound.data(), static_cast<int>(sound.size()));
        m_runtime.decode(m_recognizer, stream.get());
        const std::unique_ptr<const SherpaOnnxOfflineRecognizerResult,
                              void (*)(const SherpaOnnxOfflineRecognizerResult*)>
            result(m_runtime.result(stream.get()), m_runtime.destroyResult);
        if (!result || result->text == nullptr)
            return {};
        const double seconds = secondsOfSamples(static_cast<std::int64_t>(samples.size()));
        return spreadWords(withoutLoops(QString::fromUtf8(result->text)), startSeconds, startSeconds + seconds);
    }

private:
    const InferenceRuntime& m_runtime;
    const SherpaOnnxOfflineRecognizer* m_recognizer;
};

QString damaged(const RecognitionModel& model) {
    return QStringLiteral("The speech model “%1” is damaged or of a kind that this worker does not know.")
        .arg(model.name);
}

// The library takes any text for a list of tokens, and then recognises nothing.
bool hasTokens(const QString& file) {
    constexpr int fewest = 10;
    QFile tokens(file);
    if (!tokens.open(QIODevice::ReadOnly))
        return false;
    int count = 0;
    while (count < fewest && !tokens.atEnd()) {
        bool numbered = false;
        (void)tokens.readLine().trimmed().split(' ').constLast().toInt(&numbered);
        if (!numbered)
            return false;
        ++count;
    }
    return count == fewest;
}

using RecognizerHandle =
    std::unique_ptr<const SherpaOnnxOfflineRecognizer, void (*)(const SherpaOnnxOfflineRecognizer*)>;

RecognizerHandle load(const InferenceRuntime& runtime, const RecognitionModel& model, const QString& language) {
    RecognizerHandle handle(nullptr, runtime.destroyRecognizer);
    // Exceptions of the library come through its C interface.
    try {
        if (hasTokens(model.tokens))
            handle.reset(runtime.createRecognizer(Configuration(model, language).get()));
    } catch (const std::exception& error) {
        logLine(QString::fromUtf8(error.what()));
    }
    if (!handle)
        throw WorkerError(damaged(model));
    return handle;
}

class NetworkEngine : public RecognitionEngine {
public:
    NetworkEngine(const InferenceRuntime& runtime, const RecognitionModel& model, const QString& language)
        : m_runtime(runtime), m_model(model), m_recognizer(load(runtime, model, language)) {}

    QString engineName() const override { return QStringLiteral("sherpa-onnx ") + inferenceRuntimeVersion(); }
    QString modelName() const override { return m_model.name; }
    Spelling spelling() const override {
        const bool bare = m_model.kind == Kind::Transducer || m_model.kind == Kind::ZipformerCtc ||
                          m_model.kind == Kind::WenetCtc || m_model.kind == Kind::Paraformer;
        return bare ? Spelling::BareWords : Spelling::Sentences;
    }
    QString crashText() const override { return damaged(m_model); }

    // The library decodes several streams of one recogniser at once.
    std::unique_ptr<RegionRecognizer> recognizer() const override {
        return std::make_unique<NetworkRecognizer>(m_runtime, m_recognizer.get());
    }

private:
    const InferenceRuntime& m_runtime;
    RecognitionModel m_model;
    RecognizerHandle m_recognizer;
};

QStringList wordsOf(const QString& text) {
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    return text.split(blanks, Qt::SkipEmptyParts);
}

// How often the `length` words from `first` on stand there in a row.
qsizetype repeats(const QStringList& words, qsizetype first, qsizetype length) {
    const auto same = [&](qsizetype other) {
        for (qsizetype index = 0; index < length; ++index)
            if (words[first + index].compare(words[other + index], Qt::CaseInsensitive) != 0)
                return false;
        return true;
    };
    qsizetype count = 1;
    while (first + (count + 1) * length <= words.size() && same(first + count * length))
        ++count;
    return count;
}

} // namespace

std::unique_ptr<RecognitionEngine> networkEngine(const InferenceRuntime& runtime, const RecognitionModel& model,
                                                 const QString& language) {
    return std::make_unique<NetworkEngine>(runtime, model, language);
}

std::vector<RecognizedWord> spreadWords(const QString& text, double start, double end) {
    const QStringList words = wordsOf(text);
    const auto weight = [](const QString& word) { return static_cast<double>(word.size() + 1); };
    const double total = std::accumulate(words.begin(), words.end(), 0.0,
                                         [&](double sum, const QString& word) { return sum + weight(word); });
    std::vector<RecognizedWord> spread;
    spread.reserve(static_cast<std::size_t>(words.size()));
    double passed = 0;
    for (const QString& word : words) {
        const double from = start + (end - start) * passed / total;
        passed += weight(word);
        spread.push_back({from, start + (end - start) * passed / total, word});
    }
    return spread;
}

QString withoutLoops(const QString& text) {
    constexpr qsizetype longestLoop = 8;
    constexpr qsizetype mostRepeats = 3;
    const QStringList words = wordsOf(text);
    QStringList kept;
    for (qsizetype index = 0; index < words.size();) {
        qsizetype once = 1;
        qsizetype passed = 1;
        for (qsizetype length = 1; length <= longestLoop; ++length)
            if (const qsizetype count = repeats(words, index, length); count > mostRepeats) {
                once = length;
                passed = count * length;
                break;
            }
        kept << words.mid(index, once);
        index += passed;
    }
    return kept.join(QLatin1Char(' '));
}

} // namespace corvane
