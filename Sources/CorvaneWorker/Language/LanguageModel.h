// A language model as the worker needs it: text goes in, JSON of an asked form comes out. What it says is never
// trusted; LanguageAnswer.h checks it. One thread.
#pragma once

#include "CorvaneContract/Error.h"

#include <QJsonObject>
#include <QString>

namespace corvane {

// text() is a short clause without a full stop: the application shows it behind “Ollama unavailable: ”.
class LanguageError : public Error {
public:
    using Error::Error;
};

struct LanguageQuestion {
    QString instructions; // what to do
    QString text;         // what to do it with
    QJsonObject schema;   // JSON Schema of the answer
    double temperature = 0;
    int mostAnswerTokens = 1024;
};

class LanguageModel {
public:
    LanguageModel() = default;
    virtual ~LanguageModel() = default;
    LanguageModel(const LanguageModel&) = delete;
    LanguageModel& operator=(const LanguageModel&) = delete;

    [[nodiscard]] virtual QString provider() const = 0;
    [[nodiscard]] virtual QString name() const = 0;
    // The text that the model gave, which ought to be JSON of the form. Waits for it. Throws LanguageError if the
    // model cannot be reached or does not come to an end.
    [[nodiscard]] virtual QString answer(const LanguageQuestion& question) = 0;
};

} // namespace corvane
