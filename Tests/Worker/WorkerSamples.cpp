#include "Worker/WorkerSamples.h"

#include "Support/PrintQt.h"

#include "CorvaneWorker/Audio/AudioDecoder.h"

#include <QDataStream>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace corvane::test {

QString readerSentence(const QString& number) {
    return u"/usr/share/pocketsphinx/test/data/librivox/sense_and_sensibility_01_austen_64kb-%1.wav"_s.arg(number);
}

QString prompt(const QString& name) {
    return u"/usr/share/asterisk/sounds/en_US_f_Allison/%1.g722"_s.arg(name);
}

void ffmpeg(const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(u"ffmpeg"_s, QStringList{u"-nostdin"_s, u"-v"_s, u"error"_s, u"-y"_s} + arguments);
    ASSERT_TRUE(process.waitForFinished(60000));
    ASSERT_EQ(process.exitCode(), 0) << process.readAll().constData();
}

QStringList inputOf(const QString& path) {
    if (path.endsWith(u".g722"_s))
        return {u"-f"_s, u"g722"_s, u"-i"_s, path};
    return {u"-i"_s, path};
}

std::vector<std::int16_t> samplesOf(const QString& path) {
    std::vector<std::int16_t> samples;
    const QTemporaryDir directory;
    const QString wave = directory.filePath(u"sound.wav"_s);
    ffmpeg(inputOf(path) + QStringList{wave});
    (void)decodeAudio(
        wave, [&](std::span<const std::int16_t> block) { samples.insert(samples.end(), block.begin(), block.end()); },
        [](double) {});
    return samples;
}

void writeWave(const QString& path, const std::vector<std::int16_t>& samples) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QDataStream out(&file);
    out.setByteOrder(QDataStream::LittleEndian);
    const auto bytes = static_cast<quint32>(samples.size() * sizeof(std::int16_t));
    out.writeRawData("RIFF", 4);
    out << (bytes + 36U);
    out.writeRawData("WAVEfmt ", 8);
    out << 16U << quint16(1) << quint16(1) << quint32(sampleRate) << quint32(sampleRate * 2) << quint16(2)
        << quint16(16);
    out.writeRawData("data", 4);
    out << bytes;
    out.writeRawData(reinterpret_cast<const char*>(samples.data()), static_cast<int>(bytes));
}

Conversation converse(const std::vector<QStringList>& filesOfSpeakers) {
    constexpr double wantedLevel = 2000.0; // root mean square
    constexpr double hissLevel = 8.0;
    Conversation conversation;
    const auto pause = [&] { conversation.samples.insert(conversation.samples.end(), sampleRate / 2, 0); };
    for (qsizetype turn = 0; turn < filesOfSpeakers.front().size(); ++turn) {
        for (std::size_t speaker = 0; speaker < filesOfSpeakers.size(); ++speaker) {
            const auto spoken = samplesOf(filesOfSpeakers[speaker].value(turn));
            double energy = 0;
            for (const std::int16_t sample : spoken)
                energy += static_cast<double>(sample) * sample;
            const double gain = wantedLevel / std::sqrt(energy / static_cast<double>(spoken.size()));
            pause();
            const double start = secondsOfSamples(static_cast<std::int64_t>(conversation.samples.size()));
            for (const std::int16_t sample : spoken)
                conversation.samples.push_back(static_cast<std::int16_t>(std::clamp(sample * gain, -32000.0, 32000.0)));
            const double end = secondsOfSamples(static_cast<std::int64_t>(conversation.samples.size()));
            conversation.turns.push_back({start, end, static_cast<int>(speaker)});
        }
    }
    pause();
    std::mt19937 random(1);
    std::normal_distribution<double> hiss(0.0, hissLevel);
    for (std::int16_t& sample : conversation.samples)
        sample = static_cast<std::int16_t>(std::clamp(sample + hiss(random), -32768.0, 32767.0));
    return conversation;
}

} // namespace corvane::test
