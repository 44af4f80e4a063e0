// Sound for the worker's tests, made when a test runs from Debian packages by the ffmpeg command line. One per test.
#pragma once

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/Diarization/SpeakerTurn.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <vector>

namespace corvane::test {

// The LibriVox sentences, by their numbers: 0870, 0880, 0890, 0920, 0930.
[[nodiscard]] QString readerSentence(const QString& number);
// A prompt of the professional speaker of asterisk-core-sounds-en-g722.
[[nodiscard]] QString prompt(const QString& name);

// Runs ffmpeg with the arguments; the last one is the file to make. Ends the test program's case with a failure if
// ffmpeg fails.
void ffmpeg(const QStringList& arguments);
// What ffmpeg needs before a file of its inputs.
[[nodiscard]] QStringList inputOf(const QString& path);

[[nodiscard]] std::vector<std::int16_t> samplesOf(const QString& path);
void writeWave(const QString& path, const std::vector<std::int16_t>& samples);

// A conversation of speakers who alternate, each file a turn, with pauses of half a second over a faint hiss.
struct Conversation {
    std::vector<std::int16_t> samples;
    std::vector<SpeakerTurn> turns;
};
[[nodiscard]] Conversation converse(const std::vector<QStringList>& filesOfSpeakers);

} // namespace corvane::test
