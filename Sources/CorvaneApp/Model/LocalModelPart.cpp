#include "CorvaneApp/Model/LocalModelPart.h"

#include "CorvaneCore/Settings/DefaultsKeys.h"

namespace corvane {

LocalModelPart::LocalModelPart(std::shared_ptr<UserDefaults> defaults, QObject* parent)
    : ModelPart(parent),
      m_defaults(std::move(defaults)),
      m_useOllama(m_defaults->boolean(defaultsKeys::useOllamaSpeakerContext).value_or(false)) {}

void LocalModelPart::updateUseOllamaSpeakerContext(bool use) {
    publish(m_useOllama, use, "useOllamaSpeakerContext", &LocalModelPart::useOllamaSpeakerContextChanged);
    m_defaults->set(defaultsKeys::useOllamaSpeakerContext, use);
}

void LocalModelPart::setStatus(const OllamaStatus& status) {
    publish(m_status, status, "ollamaStatus", &LocalModelPart::ollamaStatusChanged);
    if ((status.isInstalled || status.isRunning) && !m_useOllama)
        updateUseOllamaSpeakerContext(true);
}

} // namespace corvane
