#include "CorvaneApp/Model/PlaybackPart.h"

#include "CorvaneCore/Transcripts/SpeakerReview.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <chrono>

namespace corvane {

namespace {
std::chrono::milliseconds milliseconds(double seconds) {
    return std::chrono::milliseconds(static_cast<qint64>(std::max(0.0, seconds) * 1000.0));
}
} // namespace

PlaybackPart::PlaybackPart(std::shared_ptr<AudioPlayers> players, QObject* parent)
    : ModelPart(parent), m_players(std::move(players)) {
    for (QTimer* timer : {&m_endOfPlayback, &m_endOfExample}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    connect(&m_endOfPlayback, &QTimer::timeout, this, &PlaybackPart::stop);
    connect(&m_endOfExample, &QTimer::timeout, this, &PlaybackPart::playNextExample);
}

double PlaybackPart::play(const QString& file, double fromSeconds) {
    auto player = m_players->open(file);
    const double duration = player->durationSeconds();
    const double from = std::max(0.0, std::min(fromSeconds, duration));
    player->setCurrentTime(from);
    stop(); // an earlier sound ends before the new one begins
    start(*player);
    m_player = std::move(player);
    setIsPlaying(true);
    m_endOfPlayback.start(milliseconds(duration - from));
    return from;
}

void PlaybackPart::start(AudioPlayer& player) {
    player.play([part = QPointer(this), attempt = ++m_attempt](const QString& reason) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [part, attempt, reason] {
                if (part)
                    part->fail(attempt, reason);
            },
            Qt::QueuedConnection);
    });
}

void PlaybackPart::playExamples(const QString& speaker, const QString& file,
                                const std::vector<TranscriptExample>& examples) {
    stop();
    m_exampleFile = file;
    m_examples.assign(examples.rbegin(), examples.rend());
    setPlayingExamplesFor(speaker);
    setIsPlaying(true);
    m_endOfExample.start(0);
}

void PlaybackPart::playNextExample() {
    m_player.reset();
    if (m_examples.empty()) {
        stop();
        return;
    }
    const TranscriptExample example = m_examples.back();
    m_examples.pop_back();
    try {
        m_player = m_players->open(m_exampleFile);
        m_player->setCurrentTime(std::max(0.0, std::min(example.start, m_player->durationSeconds())));
        start(*m_player);
    } catch (const AudioPlayerError& error) {
        fail(m_attempt, error.text());
        return;
    }
    m_endOfExample.start(milliseconds(
        excerptWaitSeconds(example.start, example.end, m_player->durationSeconds(), m_player->currentTimeSeconds())));
}

void PlaybackPart::stop() {
    m_endOfPlayback.stop();
    m_endOfExample.stop();
    m_examples.clear();
    m_player.reset();
    setPlayingExamplesFor(std::nullopt);
    setIsPlaying(false);
}

void PlaybackPart::fail(int attempt, const QString& reason) {
    if (attempt != m_attempt || !m_isPlaying)
        return;
    const bool wasExample = m_playingExamplesFor.has_value();
    stop();
    if (wasExample)
        Q_EMIT examplesFailed(reason);
    else
        Q_EMIT playbackFailed(reason);
}

void PlaybackPart::setPlayingExamplesFor(std::optional<QString> speaker) {
    publish(m_playingExamplesFor, std::move(speaker), "playingSpeakerExamplesFor",
            &PlaybackPart::playingSpeakerExamplesForChanged);
}

void PlaybackPart::setIsPlaying(bool playing) {
    publish(m_isPlaying, playing, "isPlayingAudio", &PlaybackPart::isPlayingAudioChanged);
}

QString playbackTimestampText(double seconds) {
    const auto whole = static_cast<long long>(std::max(0.0, seconds));
    return QString::asprintf("%02lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
}

} // namespace corvane
