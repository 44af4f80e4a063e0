#include "CorvanePlatform/Linux/Audio/FFmpegAudioPlayers.h"

#include "CorvaneContract/Text/UserText.h"
#include "CorvanePlatform/Linux/Audio/FFmpegAudioFileInspector.h"
#include "CorvanePlatform/Linux/Audio/PulsePlayback.h"

#include <QFileInfo>

namespace corvane {

namespace {

class FFmpegAudioPlayer final : public AudioPlayer {
public:
    explicit FFmpegAudioPlayer(const QString& path) : m_decoder(path) {
        const auto length = FFmpegAudioFileInspector().durationSeconds(path);
        if (!length)
            throw AudioPlayerError(UserText::tr("%1: It holds no sound").arg(QFileInfo(path).fileName()));
        m_duration = *length;
    }
    ~FFmpegAudioPlayer() override { stop(); }

    double durationSeconds() const override { return m_duration; }
    double currentTimeSeconds() const override { return m_playback ? m_playback->positionSeconds() : m_time; }

    void setCurrentTime(double seconds) override {
        const bool wasPlaying = m_playback != nullptr;
        stop();
        m_time = seconds;
        if (!wasPlaying)
            return;
        try {
            play(m_onFailure);
        } catch (const AudioPlayerError&) {
            // The server went away while it played, as the handler was told.
        }
    }
    void play(FailureHandler onFailure) override {
        stop();
        m_onFailure = std::move(onFailure);
        m_decoder.seek(m_time);
        m_playback = std::make_unique<PulsePlayback>(m_decoder, m_time, m_onFailure);
    }
    void stop() override {
        m_time = currentTimeSeconds();
        m_playback.reset();
    }

private:
    FFmpegDecoder m_decoder;
    double m_duration = 0;
    double m_time = 0; // while it does not play
    FailureHandler m_onFailure;
    std::unique_ptr<PulsePlayback> m_playback; // uses the decoder
};

} // namespace

std::unique_ptr<AudioPlayer> FFmpegAudioPlayers::open(const QString& path) {
    return std::make_unique<FFmpegAudioPlayer>(path);
}

} // namespace corvane
