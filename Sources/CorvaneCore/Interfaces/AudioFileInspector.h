// The length of an audio or movie file. Thread-safe; blocking for as long as it takes to read a header.
#pragma once

#include <QString>

#include <optional>

namespace corvane {

class AudioFileInspector {
public:
    virtual ~AudioFileInspector() = default;
    // Seconds, finite and above zero; nothing if the file holds no audio of a known length or cannot be read.
    [[nodiscard]] virtual std::optional<double> durationSeconds(const QString& path) const = 0;
};

} // namespace corvane
