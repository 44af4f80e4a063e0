#include "CorvaneWorker/Language/OllamaModel.h"

#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneWorker/Language/HttpExchange.h"
#include "CorvaneWorker/Language/OllamaAnswer.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr std::chrono::milliseconds mostConnect{5000};
constexpr int totalPerSilence = 4;
constexpr qint64 mostAnswerBytes = 8LL * 1024 * 1024;
constexpr qsizetype mostErrorCharacters = 200;
constexpr int statusOk = 200;
constexpr int statusBadRequest = 400;
constexpr int statusNotFound = 404;

HttpLimits limitsFor(std::chrono::milliseconds silence) {
    return {.connect = std::min(mostConnect, silence),
            .silence = silence,
            .total = silence * totalPerSilence,
            .answerBytes = mostAnswerBytes};
}

QJsonObject message(const char* role, const QString& content) {
    return {{QStringLiteral("role"), QString::fromLatin1(role)}, {QStringLiteral("content"), content}};
}

QString shortened(const QString& error) {
    QString line = error.simplified().left(mostErrorCharacters);
    while (line.endsWith(QLatin1Char('.')))
        line.chop(1);
    return line;
}

QString refusal(int status, const OllamaAnswer& answer, const QString& model) {
    if (status == statusNotFound && answer.error())
        return QStringLiteral("the model “%1” is not installed (ollama pull %1)").arg(model);
    if (answer.error())
        return shortened(*answer.error());
    return QStringLiteral("it answered with status %1").arg(status);
}

} // namespace

OllamaModel::OllamaModel(const LanguageSettings& settings) : m_settings(settings) {}

QByteArray OllamaModel::request(const LanguageQuestion& question) const {
    QJsonObject body{{QStringLiteral("model"), m_settings.model},
                     {QStringLiteral("messages"),
                      QJsonArray{message("system", question.instructions), message("user", question.text)}},
                     {QStringLiteral("stream"), true},
                     {QStringLiteral("format"), question.schema},
                     {QStringLiteral("options"), QJsonObject{{QStringLiteral("num_ctx"), m_settings.contextTokens},
                                                             {QStringLiteral("num_predict"), question.mostAnswerTokens},
                                                             {QStringLiteral("temperature"), question.temperature}}}};
    if (m_thinkWord == ThinkWord::Said)
        body.insert(QStringLiteral("think"), false);
    return compactJson(body);
}

QString OllamaModel::answer(const LanguageQuestion& question) {
    QUrl address = m_settings.endpoint;
    address.setPath(address.path() + QStringLiteral("/api/chat"));
    OllamaAnswer answer;
    int status = 0;
    try {
        status = postJson(address, request(question), limitsFor(m_settings.timeout),
                          [&answer](QByteArrayView bytes) { answer.add(bytes); });
    } catch (const HttpExchangeError& error) {
        const QString endpoint = m_settings.endpoint.toDisplayString(QUrl::RemoveUserInfo);
        throw LanguageError(QStringLiteral("%1: %2").arg(endpoint, error.text()));
    }
    answer.finish();
    // Some models refuse the word instead of ignoring it.
    if (status == statusBadRequest && m_thinkWord == ThinkWord::Said &&
        answer.error().value_or(QString()).contains(QLatin1String("think"))) {
        m_thinkWord = ThinkWord::Left;
        return this->answer(question);
    }
    if (status != statusOk || answer.error())
        throw LanguageError(refusal(status, answer, m_settings.model));
    if (!answer.isWhole())
        throw LanguageError(QStringLiteral("no whole answer came"));
    return answer.text();
}

} // namespace corvane
