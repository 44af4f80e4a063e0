#include "CorvaneWorker/Recognition/PocketSphinxEngine.h"

#include "CorvaneWorker/Recognition/SpeechDecoder.h"
#include "CorvaneWorker/Recognition/SpeechModel.h"

namespace corvane {

namespace {

class Recognizer : public RegionRecognizer {
public:
    explicit Recognizer(const SpeechModel& model) : m_decoder(model) {}

    std::vector<RecognizedWord> recognize(std::span<const std::int16_t> samples, double startSeconds) override {
        return m_decoder.recognize(samples, startSeconds);
    }

private:
    SpeechDecoder m_decoder;
};

class PocketSphinxEngine : public RecognitionEngine {
public:
    PocketSphinxEngine() : m_model(installedSpeechModel()) {}

    QString engineName() const override { return QStringLiteral("PocketSphinx"); }
    QString modelName() const override { return m_model.name; }
    Spelling spelling() const override { return Spelling::BareWords; }
    QString crashText() const override {
        return QStringLiteral(
            "The speech model is damaged and cannot be used. Reinstall the package pocketsphinx-en-us.");
    }
    std::unique_ptr<RegionRecognizer> recognizer() const override { return std::make_unique<Recognizer>(m_model); }

private:
    SpeechModel m_model;
};

} // namespace

std::unique_ptr<RecognitionEngine> pocketSphinxEngine() {
    return std::make_unique<PocketSphinxEngine>();
}

} // namespace corvane
