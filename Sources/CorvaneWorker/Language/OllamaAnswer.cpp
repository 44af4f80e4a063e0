#include "CorvaneWorker/Language/OllamaAnswer.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneWorker/Language/LanguageModel.h"

namespace corvane {

namespace {

constexpr qsizetype mostTextCharacters = 256 * 1024;

} // namespace

void OllamaAnswer::add(QByteArrayView bytes) {
    m_rest.append(bytes);
    qsizetype start = 0;
    for (qsizetype end = m_rest.indexOf('\n'); end >= 0; end = m_rest.indexOf('\n', start)) {
        takeLine(m_rest.mid(start, end - start));
        start = end + 1;
    }
    m_rest.remove(0, start);
}

void OllamaAnswer::finish() {
    takeLine(std::exchange(m_rest, {}));
    // A single object may be spread over lines.
    (void)takeObject(m_unread);
    m_unread.clear();
}

void OllamaAnswer::takeLine(const QByteArray& line) {
    if (!line.trimmed().isEmpty() && !takeObject(line))
        m_unread += line + '\n';
    if (m_text.size() > mostTextCharacters)
        throw LanguageError(QStringLiteral("the model does not come to an end"));
}

bool OllamaAnswer::takeObject(const QByteArray& json) {
    try {
        const JsonDocument document(json);
        const JsonObject object = document.root().object();
        if (const auto error = object.optional("error"))
            m_error = error->string();
        if (const auto message = object.optional("message"))
            m_text += message->object().required("content").string();
        if (const auto done = object.optional("done"))
            m_whole = m_whole || done->boolean();
        return true;
    } catch (const JsonError&) {
        return false;
    }
}

} // namespace corvane
