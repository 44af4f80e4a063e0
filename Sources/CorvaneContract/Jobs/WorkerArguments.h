// The words of the worker's command line and environment: one side writes them, the other reads them.
#pragma once

#include <QString>

namespace corvane {

namespace workerArguments {
inline const QString process = QStringLiteral("process");
inline const QString speakerContext = QStringLiteral("speaker-context");
inline const QString speakerProfiles = QStringLiteral("speaker-profiles");
inline const QString extract = QStringLiteral("extract");
inline const QString audio = QStringLiteral("--audio");
inline const QString outDir = QStringLiteral("--out-dir");
inline const QString device = QStringLiteral("--device");
inline const QString backend = QStringLiteral("--backend");
inline const QString language = QStringLiteral("--language");
inline const QString noDiarization = QStringLiteral("--no-diarization");
inline const QString autoSpeakers = QStringLiteral("--auto-speakers");
inline const QString minSpeakers = QStringLiteral("--min-speakers");
inline const QString maxSpeakers = QStringLiteral("--max-speakers");
inline const QString numSpeakers = QStringLiteral("--num-speakers");
inline const QString runDir = QStringLiteral("--run-dir");
inline const QString context = QStringLiteral("--context");
inline const QString speaker = QStringLiteral("--speaker");
inline const QString out = QStringLiteral("--out");
} // namespace workerArguments

namespace workerEnvironment {
inline const QString path = QStringLiteral("CORVANE_WORKER_PATH");
inline const QString llm = QStringLiteral("CORVANE_WORKER_LLM");
inline const QString ollamaEndpoint = QStringLiteral("CORVANE_WORKER_OLLAMA_ENDPOINT");
inline const QString ollamaModel = QStringLiteral("CORVANE_WORKER_OLLAMA_MODEL");
inline const QString ollamaTimeout = QStringLiteral("CORVANE_WORKER_OLLAMA_TIMEOUT");
inline const QString ollamaContextSize = QStringLiteral("CORVANE_WORKER_OLLAMA_NUM_CTX");
inline const QString huggingFaceToken = QStringLiteral("HF_TOKEN");
} // namespace workerEnvironment

// The identifier of the voice model whose vectors the application stores and looks up.
inline const QString voiceModelID = QStringLiteral("corvane-acoustic-v1");

} // namespace corvane
