// The form that a language model has to answer in, and the check of what it answers. Pure functions; any thread.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneWorker/Language/LanguageModel.h"
#include "CorvaneWorker/Language/SpokenLines.h"

#include <QJsonObject>
#include <QStringList>

#include <vector>

namespace corvane {

// The answer is no JSON of the form: asking again may help.
class AnswerFormError : public LanguageError {
public:
    using LanguageError::LanguageError;
};

struct LanguageAnswer {
    QString summary;
    std::vector<TranscriptSpeakerContext> speakers; // in the order of the labels, each at most once
};

// JSON Schema: "summary" and "speakers", whose "speaker" is one of the labels.
[[nodiscard]] QJsonObject answerSchema(const QStringList& labels);

// The answer in the model's text, which may have thoughts and a code fence around it. A speaker who is none of `labels`
// is left out, as is a quotation that `spoken` does not have of that speaker, and what is too long is cut. Throws
// AnswerFormError if the text is not JSON of the form or has no summary.
[[nodiscard]] LanguageAnswer readAnswer(const QString& text, const QStringList& labels, const SpokenLines& spoken);

} // namespace corvane
