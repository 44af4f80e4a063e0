// What the settings page and the setup wizard ask for beyond the parts: the Hugging Face token, pages of the web, and
// the tools of this machine. The token store may take its time, so that it is asked beside the main loop.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneCore/Concurrency/Background.h"

namespace corvane {

namespace {

QFuture<bool> changeTokens(const std::shared_ptr<SecretStoring>& store,
                           const std::function<void(SecretStoring&)>& change) {
    return inBackground([store, change] {
        try {
            change(*store);
            return true;
        } catch (const Error&) {
            return false;
        }
    });
}

} // namespace

QFuture<std::optional<bool>> AppModel::hasHuggingFaceToken() const {
    return inBackground([store = m_services.tokenStore]() -> std::optional<bool> {
        try {
            return store->hasHuggingFaceToken();
        } catch (const Error&) {
            return std::nullopt;
        }
    });
}

QFuture<bool> AppModel::saveHuggingFaceToken(const QString& token) const {
    return changeTokens(m_services.tokenStore, [token](SecretStoring& store) { store.saveHuggingFaceToken(token); });
}

QFuture<bool> AppModel::deleteHuggingFaceToken() const {
    return changeTokens(m_services.tokenStore, [](SecretStoring& store) { store.deleteHuggingFaceToken(); });
}

bool AppModel::openWebPage(const QUrl& address) {
    const bool isWebPage = address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https");
    return isWebPage && address.isValid() && m_services.workspace->open(QString::fromUtf8(address.toEncoded()));
}

std::unique_ptr<DependencySetupModel> AppModel::makeDependencySetup() const {
    return std::make_unique<DependencySetupModel>(m_services.processes);
}

bool AppModel::usesOwnWorker() const {
    // A worker found elsewhere, in an environment of the user's, may need whatever it likes.
    const auto worker = findWorker();
    const auto& own = m_services.bundleResourceDirectory;
    return worker && own && worker->startsWith(*own + QLatin1Char('/'));
}

} // namespace corvane
