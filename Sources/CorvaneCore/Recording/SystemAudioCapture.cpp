#include "CorvaneCore/Recording/SystemAudioCapture.h"

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
    return mode == SystemAudioCaptureMode::off ? QStringLiteral("Microphone only")
                                               : QStringLiteral("Microphone + system audio");
}

SystemAudioCaptureError SystemAudioCaptureError::unsupportedOS() {
    return SystemAudioCaptureError(QStringLiteral("System audio capture requires macOS 14.2 or newer."));
}

SystemAudioCaptureError SystemAudioCaptureError::formatUnavailable() {
    return SystemAudioCaptureError(QStringLiteral("System audio format is unavailable."));
}

SystemAudioCaptureError SystemAudioCaptureError::notRecording() {
    return SystemAudioCaptureError(QStringLiteral("System audio recorder is not recording."));
}

SystemAudioCaptureError SystemAudioCaptureError::coreAudioStatus(const QString& operation, std::int32_t status) {
    return SystemAudioCaptureError(
        QStringLiteral("%1 failed with Core Audio status %2.").arg(operation, QString::number(status)));
}

} // namespace corvane
