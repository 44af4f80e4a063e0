#include "CorvaneWorker/Language/LanguageSettings.h"

#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneWorker/Language/LanguageModel.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr int leastContextTokens = 2048; // below it the instructions leave no room for a meeting
constexpr int mostContextTokens = 1 << 20;
constexpr int mostTimeoutSeconds = 24 * 60 * 60;

QString value(const QString& name, const char* fallback) {
    const QString text = qEnvironmentVariable(name.toUtf8().constData()).trimmed();
    return text.isEmpty() ? QString::fromLatin1(fallback) : text;
}

int count(const QString& name, const char* fallback, int most) {
    const QString text = value(name, fallback);
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < 1)
        throw LanguageError(QStringLiteral("%1 is no number above zero: “%2”").arg(name, text));
    return std::min(number, most);
}

LanguageModelUse use(LanguageModelUse useWithoutWord) {
    const QString word = value(workerEnvironment::llm, "");
    if (word.isEmpty())
        return useWithoutWord;
    if (word == QLatin1String("off"))
        return LanguageModelUse::Off;
    if (word == QLatin1String("ollama"))
        return LanguageModelUse::Ollama;
    throw LanguageError(QStringLiteral("%1 is neither “ollama” nor “off”: “%2”").arg(workerEnvironment::llm, word));
}

QUrl endpoint() {
    QString text = value(workerEnvironment::ollamaEndpoint, "http://127.0.0.1:11434");
    while (text.endsWith(QLatin1Char('/')))
        text.chop(1);
    QUrl url(text, QUrl::StrictMode);
    const bool known = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (!url.isValid() || !known || url.host().isEmpty() || url.hasQuery() || url.hasFragment())
        throw LanguageError(QStringLiteral("%1 is no HTTP address: “%2”").arg(workerEnvironment::ollamaEndpoint, text));
    return url;
}

} // namespace

LanguageSettings languageSettings(LanguageModelUse useWithoutWord) {
    LanguageSettings settings;
    settings.use = use(useWithoutWord);
    if (settings.use == LanguageModelUse::Off)
        return settings;
    settings.endpoint = endpoint();
    settings.model = value(workerEnvironment::ollamaModel, "qwen3:1.7b");
    settings.timeout = std::chrono::seconds(count(workerEnvironment::ollamaTimeout, "45", mostTimeoutSeconds));
    settings.contextTokens =
        std::max(leastContextTokens, count(workerEnvironment::ollamaContextSize, "8192", mostContextTokens));
    return settings;
}

} // namespace corvane
