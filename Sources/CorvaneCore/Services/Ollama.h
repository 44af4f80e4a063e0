// Where the optional local language model stands: whether Ollama is installed, whether its service answers, whether it
// has the model that the worker asks for. Nothing here speaks to the model itself. Values and pure functions for any
// thread, but for the question to the service, which is asked on the main thread.
#pragma once

#include "CorvaneCore/Interfaces/FileTree.h"
#include "CorvaneCore/Interfaces/HttpClient.h"

#include <QObject>

#include <vector>

namespace corvane {

inline const QString ollamaAddress = QStringLiteral("http://127.0.0.1:11434");
inline const QString ollamaModelName = QStringLiteral("qwen3:1.7b");

enum class OllamaState { unknown, checking, ready, modelMissing, installed, missing };

struct OllamaStatus {
    OllamaState state = OllamaState::unknown;
    bool isInstalled = false;
    bool isRunning = false;
    bool hasModel = false;

    friend bool operator==(const OllamaStatus&, const OllamaStatus&) = default;
};

struct OllamaTagModel {
    QString name;
};

// What the service has; its other keys are ignored.
struct OllamaTagsResponse {
    std::vector<OllamaTagModel> models;

    // The model itself or a tagged variant of it.
    [[nodiscard]] bool hasModel() const;
};

// Throws JsonError.
[[nodiscard]] OllamaTagsResponse decodeOllamaTagsResponse(const QByteArray& json);

struct OllamaService {
    bool running = false;
    bool hasModel = false;
};

// Asks the service at `address`. Never fails: what is not an answer in the service's own format is no running service.
// Silence is waited for three seconds, an answer that trickles ten times as long.
[[nodiscard]] QFuture<OllamaService> detectOllamaService(HttpClient& http, QObject& context, const QUrl& address);

// Where the programs and the data of Ollama lie on Linux.
[[nodiscard]] std::vector<QString> ollamaLocations(const QString& home);
[[nodiscard]] bool isOllamaInstalled(const FileTree& files, const std::vector<QString>& locations);

// A running service outranks what was found on the disk.
[[nodiscard]] OllamaStatus ollamaStatus(bool isInstalled, const OllamaService& service);

[[nodiscard]] QString ollamaStatusTitle(OllamaState state);
[[nodiscard]] QString ollamaStatusDetail(OllamaState state);

} // namespace corvane
