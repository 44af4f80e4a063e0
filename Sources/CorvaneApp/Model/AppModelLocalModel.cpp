// Finding out where the local language model stands.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneCore/Concurrency/Background.h"

namespace corvane {

QFuture<OllamaStatus> AppModel::refreshOllamaStatus() {
    m_localModel.setStatus({.state = OllamaState::checking});
    return detectOllama().then(this, [this](const OllamaStatus& status) {
        m_localModel.setStatus(status);
        return status;
    });
}

QFuture<OllamaStatus> AppModel::detectOllama() {
    auto service = m_services.ollamaAddress.isEmpty()
                       ? QtFuture::makeReadyFuture(OllamaService())
                       : detectOllamaService(*m_services.http, *this, m_services.ollamaAddress);
    // The files are looked at meanwhile, beside the main loop: a home may lie on a disk that is asleep.
    return inBackground([files = m_services.files, locations = m_services.ollamaLocations] {
               return isOllamaInstalled(*files, locations);
           })
        .then(this,
              [this, service](bool isInstalled) mutable {
                  return service.then(
                      this, [isInstalled](const OllamaService& found) { return ollamaStatus(isInstalled, found); });
              })
        .unwrap();
}

} // namespace corvane
