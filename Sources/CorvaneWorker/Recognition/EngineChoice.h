// Which recogniser a run gets. One thread.
#pragma once

#include "CorvaneWorker/Recognition/RecognitionEngine.h"
#include "CorvaneWorker/Recognition/RecognitionModel.h"

#include <QStringList>

namespace corvane {

struct EngineChoice {
    std::unique_ptr<RecognitionEngine> engine;
    QStringList notes; // for the log and metadata: what better means are missing, one sentence each
};

// The first installed network that knows the language, and without one PocketSphinx for English. The variable
// CORVANE_WORKER_ENGINE set to "pocketsphinx" leaves the networks out. Loading takes up to some seconds. Throws
// WorkerError if nothing knows the language.
[[nodiscard]] EngineChoice chooseEngine(const QString& language);

// All networks that are installed, in the order in which they are preferred.
[[nodiscard]] std::vector<RecognitionModel> installedNetworks();

} // namespace corvane
