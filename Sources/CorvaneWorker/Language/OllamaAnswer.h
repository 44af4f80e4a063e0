// Puts the answer of Ollama's chat interface together: a stream of JSON objects, one a line, or a single object.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

namespace corvane {

class OllamaAnswer {
public:
    // The next bytes of the body. Throws LanguageError when the model says more than any answer needs.
    void add(QByteArrayView bytes);
    // After the last byte.
    void finish();

    // What the model has said, without what it thought.
    [[nodiscard]] const QString& text() const { return m_text; }
    // What went wrong by Ollama's own words.
    [[nodiscard]] const std::optional<QString>& error() const { return m_error; }
    // Whether Ollama said that this is all.
    [[nodiscard]] bool isWhole() const { return m_whole; }

private:
    void takeLine(const QByteArray& line);
    [[nodiscard]] bool takeObject(const QByteArray& json);

    QByteArray m_rest;   // the line that is not whole yet
    QByteArray m_unread; // lines that were no JSON by themselves
    QString m_text;
    std::optional<QString> m_error;
    bool m_whole = false;
};

} // namespace corvane
