// The figures of the run that is shown, worked out from the files it leaves. Pure; any thread.
#pragma once

#include "CorvaneContract/Jobs/WorkerJobEvent.h"
#include "CorvaneContract/Jobs/WorkerJobState.h"

#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

namespace corvane {

struct RunProgress {
    std::optional<double> elapsed;              // seconds since "job_started", up to the end or now
    std::optional<double> transcriptionElapsed; // seconds from "job_started" to an "asr_progress" of 1.0
    std::optional<double> audioDuration;        // seconds
    // From 0 to 1, for a progress bar. It rests on the assumption that processing takes about as long as the audio is
    // long; it stands at 0.98 until the run ends, and a run that was quicker ends below 1.
    double estimatedProgress = 0;
    std::optional<QString> llmMessage; // the outcome of the language-model step

    friend bool operator==(const RunProgress&, const RunProgress&) = default;

    [[nodiscard]] static RunProgress from(const std::vector<WorkerJobEvent>& events,
                                          const std::optional<WorkerJobState>& state,
                                          std::optional<double> audioDuration, const QDateTime& now);
};

} // namespace corvane
