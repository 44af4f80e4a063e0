#include "CorvaneCore/Recording/SystemAudioCapture.h"

#include "CorvaneContract/Text/UserText.h"

namespace corvane {

QString rawValue(SystemAudioCaptureMode mode) {
    return mode == SystemAudioCaptureMode::off ? QStringLiteral("off") : QStringLiteral("coreAudio");
}

std::optional<SystemAudioCaptureMode> systemAudioCaptureMode(const QString& text) {
    for (const SystemAudioCaptureMode mode : allSystemAudioCaptureModes)
        if (rawValue(mode) == text)
            return mode;
    return std::nullopt;
}

QString title(SystemAudioCaptureMode mode) {
    return mode == SystemAudioCaptureMode::off ? UserText::tr("Microphone only")
                                               : UserText::tr("Microphone + system audio");
}

SystemAudioCaptureError SystemAudioCaptureError::unsupportedOS() {
    return SystemAudioCaptureError(UserText::tr("System audio capture requires macOS 14.2 or newer."));
}

SystemAudioCaptureError SystemAudioCaptureError::formatUnavailable() {
    return SystemAudioCaptureError(UserText::tr("System audio format is unavailable."));
}

SystemAudioCaptureError SystemAudioCaptureError::notRecording() {
    return SystemAudioCaptureError(UserText::tr("System audio recorder is not recording."));
}

SystemAudioCaptureError SystemAudioCaptureError::coreAudioStatus(const QString& operation, std::int32_t status) {
    return SystemAudioCaptureError(
        UserText::tr("%1 failed with Core Audio status %2.").arg(operation, QString::number(status)));
}

} // namespace corvane
