// Lengths of audio and movie files through libavformat. Files come from anywhere, so that only regular files are
// opened, only containers that carry sound, nothing that refers to other files or addresses, and for a few seconds at
// most. Stateless, any thread.
#pragma once

#include "CorvaneCore/Interfaces/AudioFileInspector.h"

#include <chrono>

namespace corvane {

class FFmpegAudioFileInspector final : public AudioFileInspector {
public:
    // A file whose length is not known by the deadline has none.
    explicit FFmpegAudioFileInspector(std::chrono::milliseconds deadline = std::chrono::seconds(5));

    [[nodiscard]] std::optional<double> durationSeconds(const QString& path) const override;

private:
    std::chrono::milliseconds m_deadline;
};

} // namespace corvane
