// The recognition model on disk: which languages there is one for, where it lies, whether it is whole. Pure values;
// any thread.
#pragma once

#include <QString>

namespace corvane {

struct SpeechModel {
    QString name;       // for metadata
    QString acoustic;   // a directory
    QString language;   // the language model's file
    QString dictionary; // a file
};

// The model for a language as the command line gives it ("en", "en-GB", "EN_us", "english"). Throws WorkerError if
// there is none for it.
void requireModelForLanguage(const QString& language);

// The model in CORVANE_WORKER_MODEL_DIR or, without it, in the directory found when this program was built. Throws
// WorkerError if a file of it is missing or empty.
[[nodiscard]] SpeechModel installedSpeechModel();

} // namespace corvane
