// Playing the meeting's audio.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Text/UserText.h"
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
        say(UserText::tr("Playing %1 from %2").arg(lastPathComponent(*audio), playbackTimestampText(from)));
    } catch (const AudioPlayerError& error) {
        say(UserText::tr("Failed to play audio: %1").arg(error.text()));
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
    say(UserText::tr("Playing examples for %1").arg(speaker.speaker));
}

void AppModel::stopAudioPlayback() {
    m_playback.stop();
}

} // namespace corvane
