// Playing the meeting's audio.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneCore/Library/FileNames.h"

namespace corvane {

void AppModel::toggleAudioPlayback() {
    if (!currentAudioURL())
        return;
    if (m_playback.isPlayingAudio())
        stopAudioPlayback();
    else
        playAudio(0);
}

void AppModel::playAudio(double fromSeconds) {
    const auto audio = currentAudioURL();
    if (!audio)
        return;
    try {
        const double from = m_playback.play(*audio, fromSeconds);
        say(QStringLiteral("Playing ") + lastPathComponent(*audio) + QStringLiteral(" from ") +
            playbackTimestampText(from));
    } catch (const AudioPlayerError& error) {
        say(QStringLiteral("Failed to play audio: ") + error.text());
    }
}

void AppModel::stopAudioPlayback() {
    m_playback.stop();
}

} // namespace corvane
