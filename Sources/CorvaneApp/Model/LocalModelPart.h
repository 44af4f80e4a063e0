// Where the optional local language model stands, and whether the worker may use it. The latter is kept in the user
// defaults.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneCore/Interfaces/UserDefaults.h"
#include "CorvaneCore/Services/Ollama.h"

#include <memory>

namespace corvane {

class LocalModelPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(bool useOllamaSpeakerContext READ useOllamaSpeakerContext WRITE updateUseOllamaSpeakerContext NOTIFY
                   useOllamaSpeakerContextChanged)

public:
    explicit LocalModelPart(std::shared_ptr<UserDefaults> defaults, QObject* parent = nullptr);

    [[nodiscard]] const OllamaStatus& ollamaStatus() const { return m_status; }
    [[nodiscard]] bool useOllamaSpeakerContext() const { return m_useOllama; }

    void updateUseOllamaSpeakerContext(bool use);
    // A status that finds Ollama, in whatever state, switches its use on.
    void setStatus(const OllamaStatus& status);

Q_SIGNALS:
    void ollamaStatusChanged();
    void useOllamaSpeakerContextChanged();

private:
    std::shared_ptr<UserDefaults> m_defaults;
    OllamaStatus m_status;
    bool m_useOllama;
};

} // namespace corvane
