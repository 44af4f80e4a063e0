#include "CorvaneWorker/Run/LanguageStep.h"

#include "CorvaneContract/Transcripts/TranscriptText.h"
#include "CorvaneWorker/Run/Log.h"

namespace corvane {

namespace {

std::optional<TranscriptLLMContext> describe(const LanguageChoice& choice, const TranscriptResult& transcript,
                                             RunReporter& reporter, double progressBefore) {
    if (!choice.fault.isEmpty())
        throw LanguageError(choice.fault);
    if (!choice.model || groupedSegments(transcript.segments).empty()) {
        reporter.event(jobEvents::llmSkipped);
        return std::nullopt;
    }
    reporter.stage(QStringLiteral("Summarizing"), progressBefore);
    auto description = describeMeeting(transcript, {}, *choice.model, choice.limits, [&](double fraction) {
        reporter.progressed(progressBefore + fraction * (1.0 - progressBefore));
    });
    reporter.event(jobEvents::llmCompleted, {{QStringLiteral("model"), description.model}});
    return description;
}

void fail(RunReporter& reporter, const QString& reason) {
    reporter.event(jobEvents::llmFailed, {{QStringLiteral("error"), reason}});
    logLine(QStringLiteral("The meeting was not summarized: %1.").arg(reason));
}

} // namespace

std::optional<TranscriptLLMContext> languageStep(const LanguageChoice& choice, const TranscriptResult& transcript,
                                                 RunReporter& reporter, double progressBefore) {
    try {
        return describe(choice, transcript, reporter, progressBefore);
    } catch (const LanguageError& error) {
        fail(reporter, error.text());
    } catch (const std::exception& error) {
        fail(reporter, QString::fromUtf8(error.what()));
    }
    return std::nullopt;
}

} // namespace corvane
