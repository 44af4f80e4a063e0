// No decoder: no file has a known length. Any thread.
#pragma once

#include "CorvaneCore/Interfaces/AudioFileInspector.h"

namespace corvane {

class NullAudioFileInspector final : public AudioFileInspector {
public:
    [[nodiscard]] std::optional<double> durationSeconds(const QString&) const override { return std::nullopt; }
};

} // namespace corvane
