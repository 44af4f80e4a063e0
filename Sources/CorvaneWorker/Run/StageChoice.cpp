#include "CorvaneWorker/Run/StageChoice.h"

#include "CorvaneWorker/Language/OllamaModel.h"
#include "CorvaneWorker/Recognition/EngineChoice.h"
#include "CorvaneWorker/Speech/VoiceActivityNetwork.h"
#include "CorvaneWorker/Voice/VoiceModel.h"

namespace corvane {

namespace {

std::unique_ptr<SpeechDetector> chooseDetector(QStringList& remarks) {
    if (auto network = VoiceActivityNetwork::load())
        return confirmedDetector(std::move(network));
    remarks << QStringLiteral("Without a network that knows speech, music and noise may be taken for it.");
    return loudnessDetector();
}

LanguageChoice chooseLanguageModel() {
    LanguageChoice choice;
    try {
        const LanguageSettings settings = languageSettings(LanguageModelUse::Off);
        if (settings.use == LanguageModelUse::Ollama)
            choice.model = std::make_unique<OllamaModel>(settings);
        choice.limits = {settings.contextTokens, settings.timeout};
    } catch (const LanguageError& error) {
        choice.fault = error.text();
    }
    return choice;
}

} // namespace

RunStages chooseStages(const ProcessCommand& command) {
    RunStages stages;
    // Before anything else: a language that nothing knows is told at once.
    EngineChoice recognition = chooseEngine(command.language);
    stages.engine = std::move(recognition.engine);
    stages.remarks = recognition.notes;
    stages.source = mediaFileSource();
    stages.detector = chooseDetector(stages.remarks);
    if (command.separation == SpeakerSeparation::On) {
        stages.separator = chooseSeparator();
        if (const QString& note = installedVoiceModel().note; !note.isEmpty())
            stages.remarks << note;
    } else {
        stages.separator = noSeparator();
    }
    stages.language = chooseLanguageModel();
    stages.writer = runDirectoryWriter(command.outDirectory);
    return stages;
}

std::unique_ptr<SpeakerSeparator> chooseSeparator() {
    const auto& model = installedVoiceModel().model;
    return model ? networkSeparator(*model) : plainSeparator();
}

std::unique_ptr<VoiceMeasurer> chooseMeasurer() {
    const auto& model = installedVoiceModel().model;
    return model ? networkMeasurer(*model) : plainMeasurer();
}

} // namespace corvane
