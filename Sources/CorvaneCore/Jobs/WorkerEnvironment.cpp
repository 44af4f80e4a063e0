#include "CorvaneCore/Jobs/WorkerEnvironment.h"

#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneCore/Interfaces/SecretStoring.h"

namespace corvane {

ProcessEnvironment WorkerEnvironment::values() const {
    ProcessEnvironment values{
        {workerEnvironment::llm, useOllama ? QStringLiteral("ollama") : QStringLiteral("off")},
        {workerEnvironment::ollamaEndpoint, QStringLiteral("http://127.0.0.1:11434")},
        {workerEnvironment::ollamaModel, QStringLiteral("qwen3:1.7b")},
        {workerEnvironment::ollamaTimeout, QStringLiteral("45")},
        {workerEnvironment::ollamaContextSize, QStringLiteral("8192")},
    };
    try {
        const auto token = tokenStore->readHuggingFaceToken();
        if (token && !token->isEmpty())
            values.emplace(workerEnvironment::huggingFaceToken, *token);
    } catch (const TokenStoreError&) {
        // The worker may well do without a token; a run is not held up by a locked keyring.
    }
    return values;
}

} // namespace corvane
