// Where a recording stands. A value.
#pragma once

#include <QString>

namespace corvane {

struct RecordingState {
    enum class Kind { idle, recording, paused, stopped };

    Kind kind = Kind::idle;
    // While recording or paused the chunk that was reported last; when stopped the finished file (of a recorder: its
    // last chunk). Empty when idle.
    QString url;

    [[nodiscard]] static RecordingState idle() { return {}; }
    [[nodiscard]] static RecordingState recording(const QString& chunk) { return {Kind::recording, chunk}; }
    [[nodiscard]] static RecordingState paused(const QString& chunk) { return {Kind::paused, chunk}; }
    [[nodiscard]] static RecordingState stopped(const QString& file) { return {Kind::stopped, file}; }

    [[nodiscard]] bool isActive() const { return kind == Kind::recording || kind == Kind::paused; }
    friend bool operator==(const RecordingState&, const RecordingState&) = default;
};

} // namespace corvane
