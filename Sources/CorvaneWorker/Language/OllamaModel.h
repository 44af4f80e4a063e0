// The user's own Ollama, asked over its chat interface. Made for a run; one thread.
#pragma once

#include "CorvaneWorker/Language/LanguageModel.h"
#include "CorvaneWorker/Language/LanguageSettings.h"

#include <chrono>

namespace corvane {

class OllamaModel : public LanguageModel {
public:
    // `settings.timeout` is how long Ollama may stay silent; a whole answer may take four times as long, since a small
    // machine writes it a few words a second, and a connection takes five seconds at most.
    explicit OllamaModel(const LanguageSettings& settings);

    [[nodiscard]] QString provider() const override { return QStringLiteral("ollama"); }
    [[nodiscard]] QString name() const override { return m_settings.model; }
    [[nodiscard]] QString answer(const LanguageQuestion& question) override;

private:
    enum class ThinkWord { Said, Left }; // whether the request tells the model not to think aloud

    [[nodiscard]] QByteArray request(const LanguageQuestion& question) const;

    const LanguageSettings m_settings;
    ThinkWord m_thinkWord = ThinkWord::Said;
};

} // namespace corvane
