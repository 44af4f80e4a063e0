// The model of PocketSphinx on disk: where it lies and whether it is whole. Pure values; any thread.
#pragma once

#include <QString>

namespace corvane {

struct SpeechModel {
    QString name;       // for metadata
    QString acoustic;   // a directory
    QString language;   // the language model's file
    QString dictionary; // a file
};

// The model in CORVANE_WORKER_MODEL_DIR or, without it, in the directory found when this program was built. Throws
// WorkerError if a file of it is missing or empty.
[[nodiscard]] SpeechModel installedSpeechModel();

} // namespace corvane
