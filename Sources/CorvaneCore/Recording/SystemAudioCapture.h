// Whether what the computer plays is captured beside the microphone, and how that fails. Values.
#pragma once

#include "CorvaneCore/Interfaces/AudioInput.h"

#include <QString>

#include <array>
#include <cstdint>
#include <optional>

namespace corvane {

enum class SystemAudioCaptureMode { off, coreAudio };

inline constexpr std::array allSystemAudioCaptureModes{SystemAudioCaptureMode::off, SystemAudioCaptureMode::coreAudio};
[[nodiscard]] QString rawValue(SystemAudioCaptureMode mode);                                     // "off", "coreAudio"
[[nodiscard]] std::optional<SystemAudioCaptureMode> systemAudioCaptureMode(const QString& text); // by its raw value
[[nodiscard]] QString title(SystemAudioCaptureMode mode);                                        // for a user to read

namespace SystemAudioCaptureSettings {
// At every launch; the choice is not kept.
inline constexpr auto defaultMode = SystemAudioCaptureMode::coreAudio;
} // namespace SystemAudioCaptureSettings

class SystemAudioCaptureError : public AudioInputError {
public:
    [[nodiscard]] static SystemAudioCaptureError unsupportedOS();
    [[nodiscard]] static SystemAudioCaptureError formatUnavailable();
    [[nodiscard]] static SystemAudioCaptureError notRecording();
    // An operation of the sound system, by its own name, and the number that it gave for its failure.
    [[nodiscard]] static SystemAudioCaptureError coreAudioStatus(const QString& operation, std::int32_t status);

private:
    using AudioInputError::AudioInputError;
};

} // namespace corvane
