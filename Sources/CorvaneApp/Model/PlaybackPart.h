// The one player of the meeting's audio: from a time to the end, or a speaker's examples one after the other. The end
// of either is known from the time that was left when it began.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/Interfaces/AudioPlayer.h"

#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

namespace corvane {

class PlaybackPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(bool isPlayingAudio READ isPlayingAudio NOTIFY isPlayingAudioChanged)

public:
    explicit PlaybackPart(std::shared_ptr<AudioPlayers> players, QObject* parent = nullptr);

    [[nodiscard]] bool isPlayingAudio() const { return m_isPlaying; }
    // The label whose examples are playing.
    [[nodiscard]] const std::optional<QString>& playingSpeakerExamplesFor() const { return m_playingExamplesFor; }
    // Where the sound that is heard stands in the file; 0 without a player.
    [[nodiscard]] double currentTimeSeconds() const { return m_player ? m_player->currentTimeSeconds() : 0.0; }

    // Plays from a time, clamped to the file, and gives the time it really starts at. Throws AudioPlayerError: a file
    // that cannot be opened leaves what was playing, and a sound server that refuses ends it.
    double play(const QString& file, double fromSeconds);
    // Plays them in the order given, each for half a second at least, in place of what was playing.
    void playExamples(const QString& speaker, const QString& file, const std::vector<TranscriptExample>& examples);
    void stop();

Q_SIGNALS:
    void isPlayingAudioChanged();
    void playingSpeakerExamplesForChanged();
    // The sound ended before its time; it plays no more.
    void playbackFailed(const QString& reason);
    void examplesFailed(const QString& reason);

private:
    void setIsPlaying(bool playing);
    void setPlayingExamplesFor(std::optional<QString> speaker);
    void start(AudioPlayer& player);
    void playNextExample();
    void fail(int attempt, const QString& reason);

    std::shared_ptr<AudioPlayers> m_players;
    std::unique_ptr<AudioPlayer> m_player;
    QTimer m_endOfPlayback;
    std::optional<QString> m_playingExamplesFor;
    QString m_exampleFile;
    std::vector<TranscriptExample> m_examples; // still to be played, the next one last
    QTimer m_endOfExample;
    bool m_isPlaying = false;
    int m_attempt = 0; // a player's word may come when it has been replaced
};

// "HH:MM:SS", cut to whole seconds; a negative time counts as 0.
[[nodiscard]] QString playbackTimestampText(double seconds);

} // namespace corvane
