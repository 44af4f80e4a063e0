#include "CorvaneCore/Jobs/RunProgress.h"

#include "CorvaneContract/Text/UserText.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr double ceilingWhileRunning = 0.98;

// The time of the first event that fits; absent also if that event has no time.
template<typename Fits>
std::optional<QDateTime> firstTime(const std::vector<WorkerJobEvent>& events, Fits fits) {
    const auto found = std::find_if(events.begin(), events.end(), fits);
    return found == events.end() ? std::nullopt : found->timestamp;
}

bool endsRun(const WorkerJobEvent& event) {
    return event.type == jobEvents::completed || event.type == jobEvents::failed || event.type == jobEvents::cancelled;
}

bool endsTranscription(const WorkerJobEvent& event) {
    return event.type == jobEvents::asrProgress && numberAt(event.payload, QStringLiteral("progress")) == 1.0;
}

double secondsBetween(const QDateTime& from, const QDateTime& to) {
    return static_cast<double>(from.msecsTo(to)) / 1000.0;
}

std::optional<QString> llmText(const WorkerJobEvent& event) {
    if (event.type == jobEvents::llmCompleted) {
        const QString model = stringAt(event.payload, QStringLiteral("model")).value_or(UserText::tr("local model"));
        return UserText::tr("Speaker context generated with %1.").arg(model);
    }
    if (event.type == jobEvents::llmFailed) {
        const auto error = stringAt(event.payload, QStringLiteral("error"));
        return error ? std::optional(UserText::tr("Using transcript snippets. Ollama unavailable: %1").arg(*error))
                     : std::nullopt;
    }
    if (event.type == jobEvents::llmSkipped)
        return UserText::tr("Using transcript snippets.");
    return std::nullopt;
}

std::optional<QString> lastLLMText(const std::vector<WorkerJobEvent>& events) {
    for (auto event = events.rbegin(); event != events.rend(); ++event) {
        if (auto text = llmText(*event))
            return text;
    }
    return std::nullopt;
}

double estimate(const RunProgress& progress, const std::optional<WorkerJobState>& state) {
    if (!progress.elapsed || !progress.audioDuration || !(*progress.audioDuration > 0))
        return state ? state->progress : 0.0;
    const double ceiling = state && state->status == jobStatus::running ? ceilingWhileRunning : 1.0;
    return std::min(*progress.elapsed / *progress.audioDuration, ceiling);
}

} // namespace

RunProgress RunProgress::from(const std::vector<WorkerJobEvent>& events, const std::optional<WorkerJobState>& state,
                              std::optional<double> audioDuration, const QDateTime& now) {
    const auto start =
        firstTime(events, [](const WorkerJobEvent& event) { return event.type == jobEvents::jobStarted; });
    const auto end = firstTime(events, endsRun);
    const auto transcriptionEnd = firstTime(events, endsTranscription);

    RunProgress progress;
    progress.audioDuration = audioDuration;
    if (start)
        progress.elapsed = secondsBetween(*start, end.value_or(now));
    if (start && transcriptionEnd)
        progress.transcriptionElapsed = secondsBetween(*start, *transcriptionEnd);
    progress.estimatedProgress = std::clamp(estimate(progress, state), 0.0, 1.0);
    progress.llmMessage = lastLLMText(events);
    return progress;
}

} // namespace corvane
