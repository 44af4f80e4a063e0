#include "CorvaneCore/Jobs/WorkerEnvironment.h"

#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneCore/Interfaces/SecretStoring.h"
#include "CorvaneCore/Services/Ollama.h"

namespace corvane {

ProcessEnvironment WorkerEnvironment::values() const {
    ProcessEnvironment values{
        {workerEnvironment::llm, useOllama ? QStringLiteral("ollama") : QStringLiteral("off")},
        {workerEnvironment::ollamaEndpoint, ollamaAddress},
        {workerEnvironment::ollamaModel, ollamaModelName},
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
