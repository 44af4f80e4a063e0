// Players that make no sound and remember where they stand. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/AudioPlayer.h"

#include <QStringList>

#include <optional>

namespace corvane {

class FakeAudioPlayers final : public AudioPlayers {
public:
    double durationSeconds = 10;
    std::optional<QString> openError;
    std::optional<QString> playError;
    AudioPlayer::FailureHandler fail; // of the last one that played
    QStringList heard;                // "play FILE at SECONDS", "end FILE"

    [[nodiscard]] std::unique_ptr<AudioPlayer> open(const QString& path) override {
        if (openError)
            throw AudioPlayerError(*openError);
        return std::make_unique<Player>(*this, path.section(QLatin1Char('/'), -1));
    }

private:
    class Player final : public AudioPlayer {
    public:
        Player(FakeAudioPlayers& all, QString file) : m_all(all), m_file(std::move(file)) {}
        ~Player() override { Player::stop(); }
        [[nodiscard]] double durationSeconds() const override { return m_all.durationSeconds; }
        [[nodiscard]] double currentTimeSeconds() const override { return m_time; }
        void setCurrentTime(double seconds) override { m_time = seconds; }
        void play(FailureHandler onFailure) override {
            if (m_all.playError)
                throw AudioPlayerError(*m_all.playError);
            m_all.heard.append(QStringLiteral("play %1 at %2").arg(m_file).arg(m_time));
            m_isPlaying = true;
            m_all.fail = std::move(onFailure);
        }
        void stop() override {
            if (m_isPlaying)
                m_all.heard.append(QStringLiteral("end ") + m_file);
            m_isPlaying = false;
        }

    private:
        FakeAudioPlayers& m_all;
        QString m_file;
        double m_time = 0;
        bool m_isPlaying = false;
    };
};

} // namespace corvane
