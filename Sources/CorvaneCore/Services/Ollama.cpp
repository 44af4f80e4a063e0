#include "CorvaneCore/Services/Ollama.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Text/UserText.h"

#include <algorithm>
#include <chrono>

namespace corvane {

using namespace std::chrono_literals;

namespace {

constexpr qint64 longestAnswer = 4LL * 1024 * 1024; // bytes, thousands of models

OllamaService serviceIn(const Outcome<HttpAnswer>& outcome) {
    try {
        const HttpAnswer& answer = outcome.value();
        if (answer.status != 200)
            return {};
        return {true, decodeOllamaTagsResponse(answer.body).hasModel()};
    } catch (const Error&) {
        return {};
    }
}

} // namespace

bool OllamaTagsResponse::hasModel() const {
    const QString variant = ollamaModelName + QLatin1Char(':');
    return std::any_of(models.begin(), models.end(), [&](const OllamaTagModel& model) {
        return model.name == ollamaModelName || model.name.startsWith(variant);
    });
}

OllamaTagsResponse decodeOllamaTagsResponse(const QByteArray& json) {
    const JsonDocument document(json);
    return {decodeArray(document.root().object().required("models"), [](const JsonView& model) {
        return OllamaTagModel{model.object().required("name").string()};
    })};
}

QFuture<OllamaService> detectOllamaService(HttpClient& http, QObject& context, const QUrl& address) {
    QUrl tags = address;
    tags.setPath(QStringLiteral("/api/tags"));
    const HttpRequest request{.method = QByteArrayLiteral("GET"),
                              .url = tags,
                              .headers = {},
                              .body = std::nullopt,
                              .timeout = 3s,
                              .maximumAnswerBytes = longestAnswer};
    return http.send(request).then(&context, [](const Outcome<HttpAnswer>& answer) { return serviceIn(answer); });
}

std::vector<QString> ollamaLocations(const QString& home) {
    return {
        QStringLiteral("/usr/local/bin/ollama"), // Ollama's own installer
        QStringLiteral("/usr/bin/ollama"),       // a package of the distribution
        QStringLiteral("/snap/bin/ollama"),          QStringLiteral("/home/linuxbrew/.linuxbrew/bin/ollama"),
        home + QStringLiteral("/.local/bin/ollama"),
        QStringLiteral("/usr/share/ollama/.ollama"), // the data where the service has a user of its own
        home + QStringLiteral("/.ollama"),
    };
}

bool isOllamaInstalled(const FileTree& files, const std::vector<QString>& locations) {
    return std::any_of(locations.begin(), locations.end(),
                       [&](const QString& path) { return files.stamp(path).kind != FileStamp::Kind::missing; });
}

OllamaStatus ollamaStatus(bool isInstalled, const OllamaService& service) {
    OllamaStatus status{.state = isInstalled ? OllamaState::installed : OllamaState::missing,
                        .isInstalled = isInstalled};
    if (service.running) {
        status.state = service.hasModel ? OllamaState::ready : OllamaState::modelMissing;
        status.isRunning = true;
        status.hasModel = service.hasModel;
    }
    return status;
}

QString ollamaStatusTitle(OllamaState state) {
    switch (state) {
    case OllamaState::unknown:
        break;
    case OllamaState::checking:
        return UserText::tr("Checking Ollama");
    case OllamaState::ready:
        return UserText::tr("Ollama is ready");
    case OllamaState::modelMissing:
        return UserText::tr("Ollama is running");
    case OllamaState::installed:
        return UserText::tr("Ollama is installed");
    case OllamaState::missing:
        return UserText::tr("Ollama is not installed");
    }
    return UserText::tr("Ollama status unknown");
}

QString ollamaStatusDetail(OllamaState state) {
    switch (state) {
    case OllamaState::unknown:
        break;
    case OllamaState::checking:
        return UserText::tr("Looking for the local Ollama service and model.");
    case OllamaState::ready:
        return UserText::tr("The qwen3:1.7b model is available. New transcripts can use local speaker hints and "
                            "summaries.");
    case OllamaState::modelMissing:
        return UserText::tr("Install the qwen3:1.7b model to enable richer local summaries. Transcript snippets "
                            "still work without it.");
    case OllamaState::installed:
        return UserText::tr("Ollama was found on this Mac, but the local service is not responding yet.");
    case OllamaState::missing:
        return UserText::tr("Transcript snippets work without Ollama. Install Ollama only if you want richer local "
                            "summaries.");
    }
    return UserText::tr("Click refresh to check whether Ollama is available.");
}

} // namespace corvane
