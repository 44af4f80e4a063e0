#include "CorvaneApp/Model/PlaybackPart.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <chrono>

namespace corvane {

PlaybackPart::PlaybackPart(std::shared_ptr<AudioPlayers> players, QObject* parent)
    : ModelPart(parent), m_players(std::move(players)) {
    m_endOfPlayback.setSingleShot(true);
    m_endOfPlayback.setTimerType(Qt::PreciseTimer);
    connect(&m_endOfPlayback, &QTimer::timeout, this, &PlaybackPart::stop);
}

double PlaybackPart::play(const QString& file, double fromSeconds) {
    auto player = m_players->open(file);
    m_endOfPlayback.stop();
    const double duration = player->durationSeconds();
    const double from = std::max(0.0, std::min(fromSeconds, duration));
    player->setCurrentTime(from);
    m_player.reset(); // an earlier sound ends before the new one begins
    setIsPlaying(false);
    player->play([part = QPointer(this), attempt = ++m_attempt](const QString& reason) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [part, attempt, reason] {
                if (part)
                    part->fail(attempt, reason);
            },
            Qt::QueuedConnection);
    });
    m_player = std::move(player);
    setIsPlaying(true);
    m_endOfPlayback.start(std::chrono::milliseconds(static_cast<qint64>(std::max(0.0, duration - from) * 1000.0)));
    return from;
}

void PlaybackPart::stop() {
    m_endOfPlayback.stop();
    m_player.reset();
    setIsPlaying(false);
}

void PlaybackPart::fail(int attempt, const QString& reason) {
    if (attempt != m_attempt || !m_isPlaying)
        return;
    stop();
    Q_EMIT playbackFailed(reason);
}

void PlaybackPart::setIsPlaying(bool playing) {
    publish(m_isPlaying, playing, "isPlayingAudio", &PlaybackPart::isPlayingAudioChanged);
}

QString playbackTimestampText(double seconds) {
    const auto whole = static_cast<long long>(std::max(0.0, seconds));
    return QString::asprintf("%02lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
}

} // namespace corvane
