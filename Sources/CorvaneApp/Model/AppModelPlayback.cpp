// Playing the meeting's audio.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Transcripts/SpeakerReview.h"

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

void AppModel::toggleSpeakerExamplesPlayback(const TranscriptSpeaker& speaker) {
    if (m_playback.playingSpeakerExamplesFor() == speaker.speaker) {
        stopAudioPlayback();
        return;
    }
    const auto audio = currentAudioURL();
    const auto examples = playableExamples(speaker.examples);
    if (!audio || examples.empty())
        return;
    m_playback.playExamples(speaker.speaker, *audio, examples);
    say(QStringLiteral("Playing examples for ") + speaker.speaker);
}

void AppModel::stopAudioPlayback() {
    m_playback.stop();
}

} // namespace corvane
