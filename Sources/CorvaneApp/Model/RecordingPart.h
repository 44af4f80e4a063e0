// The clock of the selected or current recording.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"

#include <QDateTime>

#include <optional>

namespace corvane {

class RecordingPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(double recordingElapsed READ recordingElapsed NOTIFY recordingElapsedChanged)

public:
    using ModelPart::ModelPart;

    [[nodiscard]] double recordingElapsed() const { return m_elapsed; } // seconds
    [[nodiscard]] const std::optional<QDateTime>& recordingStartedAt() const { return m_startedAt; }

    // Takes a start, or none, and sets the elapsed time to what lies between it and now, or 0.
    void setStart(std::optional<QDateTime> startedAt, const QDateTime& now) {
        m_startedAt = std::move(startedAt);
        const double elapsed = m_startedAt ? static_cast<double>(m_startedAt->msecsTo(now)) / 1000.0 : 0.0;
        publish(m_elapsed, elapsed, "recordingElapsed", &RecordingPart::recordingElapsedChanged);
    }

Q_SIGNALS:
    void recordingElapsedChanged();

private:
    std::optional<QDateTime> m_startedAt;
    double m_elapsed = 0;
};

} // namespace corvane
