// What the environment says about the language model. Values; any thread.
#pragma once

#include <QString>
#include <QUrl>

#include <chrono>

namespace corvane {

enum class LanguageModelUse { Off, Ollama };

struct LanguageSettings {
    LanguageModelUse use = LanguageModelUse::Off;
    QUrl endpoint; // scheme, host, port and perhaps a path, without a slash at its end
    QString model;
    std::chrono::milliseconds timeout{};
    int contextTokens = 0; // of the question and the answer together
};

// CORVANE_WORKER_OLLAMA_ENDPOINT, _MODEL, _TIMEOUT (seconds) and _NUM_CTX, each with its default where the variable is
// missing or empty; a context below 2,048 tokens counts as that. `use` is what CORVANE_WORKER_LLM says, and
// `useWithoutWord` where that variable is missing or empty. Throws LanguageError on a value that cannot be meant;
// where the model is off nothing but that is looked at.
[[nodiscard]] LanguageSettings languageSettings(LanguageModelUse useWithoutWord);

} // namespace corvane
