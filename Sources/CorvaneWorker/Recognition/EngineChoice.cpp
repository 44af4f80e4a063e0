#include "CorvaneWorker/Recognition/EngineChoice.h"

#include "CorvaneWorker/Models/InferenceRuntime.h"
#include "CorvaneWorker/Models/ModelPlaces.h"
#include "CorvaneWorker/Recognition/NetworkEngine.h"
#include "CorvaneWorker/Recognition/PocketSphinxEngine.h"
#include "CorvaneWorker/WorkerError.h"

#include <algorithm>

namespace corvane {

namespace {

const QString pocketSphinxLanguage = QStringLiteral("en");

std::unique_ptr<RecognitionEngine> networkFor(const QString& language, QStringList& notes) {
    const auto models = installedNetworks();
    const auto model = std::find_if(models.begin(), models.end(),
                                    [&language](const RecognitionModel& one) { return one.knows(language); });
    if (model == models.end()) {
        notes << QStringLiteral("There is no neural recogniser for “%1”.").arg(language);
        return nullptr;
    }
    const LoadedRuntime& runtime = inferenceRuntime();
    if (runtime.functions == nullptr) {
        notes << runtime.note;
        return nullptr;
    }
    return networkEngine(*runtime.functions, *model, language);
}

} // namespace

std::vector<RecognitionModel> installedNetworks() {
    std::vector<RecognitionModel> models;
    for (const QString& directory : modelDirectories(QStringLiteral("recognition")))
        if (auto model = describeModel(directory))
            models.push_back(std::move(*model));
    return models;
}

EngineChoice chooseEngine(const QString& language) {
    EngineChoice choice;
    const QString code = languageCode(language);
    if (qEnvironmentVariable("CORVANE_WORKER_ENGINE") != QLatin1String("pocketsphinx"))
        choice.engine = networkFor(code, choice.notes);
    if (choice.engine)
        return choice;
    if (!code.isEmpty() && code != pocketSphinxLanguage)
        throw WorkerError(QStringLiteral("Corvane has no speech model for “%1”. Models belong in “%2/recognition”.")
                              .arg(language, modelPlaces().constFirst()));
    choice.engine = pocketSphinxEngine();
    return choice;
}

} // namespace corvane
