#include "CorvaneCore/Recording/AudioChunkConcatenator.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Recording/MonoStream.h"

#include <QFileInfo>

#include <algorithm>

namespace corvane {

namespace {

constexpr std::size_t blockBytes = 1024 * 1024;

void writeAll(AudioFileWriter& output, const QString& path, const std::byte* frames, std::size_t count) {
    if (!output.write(frames, count))
        throw AudioFileError(UserText::tr("%1: the disk took no more").arg(lastPathComponent(path)));
}

class Joiner {
public:
    Joiner(AudioFiles& files, const QString& path, const AudioFormat& format)
        : m_files(files), m_path(path), m_format(format), m_output(files.create(path, format)), m_block(blockBytes) {}

    void append(AudioFileReader& chunk, const std::function<void(std::size_t)>& advanced) {
        const AudioFormat format = chunk.format();
        if (format == m_format)
            appendAsItIs(chunk, advanced);
        else if (format.sampleRate == m_format.sampleRate && format.channels == m_format.channels)
            appendEncoded(chunk, advanced);
        else
            appendAsMono(chunk, advanced);
    }

    void close() { m_output->close(); }

private:
    void appendAsItIs(AudioFileReader& chunk, const std::function<void(std::size_t)>& advanced) {
        const std::size_t bytes = m_block.size() / m_format.bytesPerFrame() * m_format.bytesPerFrame();
        while (const std::size_t frames = chunk.readRaw(std::span(m_block).first(bytes))) {
            writeAll(*m_output, m_path, m_block.data(), frames);
            advanced(frames);
        }
    }

    // Only the type of the samples differs: every channel stays what it is.
    void appendEncoded(AudioFileReader& chunk, const std::function<void(std::size_t)>& advanced) {
        const auto channels = static_cast<std::size_t>(m_format.channels);
        std::vector<float> samples(4096 * channels);
        while (const std::size_t frames = chunk.readFloat(samples)) {
            write(std::span(samples).first(frames * channels));
            advanced(frames);
        }
    }

    // The device has changed between two chunks. The whole has one format; every channel gets the chunk's mono sound.
    void appendAsMono(AudioFileReader& chunk, const std::function<void(std::size_t)>& advanced) {
        MonoStream mono(m_files, chunk, m_format.sampleRate);
        std::vector<float> samples(4096);
        while (const std::size_t count = mono.read(samples)) {
            write(spreadMono(std::span(samples).first(count), m_format.channels));
            advanced(count);
        }
    }

    void write(std::span<const float> samples) {
        writeAll(*m_output, m_path, encodeSamples(samples, m_format).data(),
                 samples.size() / static_cast<std::size_t>(m_format.channels));
    }

    AudioFiles& m_files;
    QString m_path;
    AudioFormat m_format;
    std::unique_ptr<AudioFileWriter> m_output;
    std::vector<std::byte> m_block;
};

// Also where a header promises frames that are not there, as after a chunk that was cut short.
std::unique_ptr<AudioFileReader> openChunk(AudioFiles& files, const QString& chunk) {
    auto reader = files.open(chunk);
    if (!reader->format().isValid())
        throw AudioConcatenationError::unreadableChunk(chunk);
    return reader;
}

} // namespace

AudioConcatenationError AudioConcatenationError::noChunks() {
    return AudioConcatenationError(UserText::tr("noChunks"));
}

AudioConcatenationError AudioConcatenationError::unreadableChunk(const QString& url) {
    return AudioConcatenationError(UserText::tr("unreadableChunk(%1)").arg(url));
}

QString AudioChunkConcatenator::concatenate(AudioFiles& files, std::vector<QString> chunks, const QString& output,
                                            const AudioProgress& progress) {
    std::stable_sort(chunks.begin(), chunks.end(),
                     [](const QString& a, const QString& b) { return lastPathComponent(a) < lastPathComponent(b); });
    if (chunks.empty())
        throw AudioConcatenationError::noChunks();
    createPrivateDirectory(QFileInfo(output).absolutePath());

    const AudioFormat format = openChunk(files, chunks.front())->format();
    Joiner joiner(files, output, format);
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        const auto chunk = openChunk(files, chunks[i]);
        const double total = std::max<double>(1.0, static_cast<double>(chunk->frameCount()));
        double done = 0;
        joiner.append(*chunk, [&](std::size_t frames) {
            done += static_cast<double>(frames);
            if (progress)
                progress((static_cast<double>(i) + std::min(1.0, done / total)) / static_cast<double>(chunks.size()));
        });
    }
    joiner.close();
    return output;
}

} // namespace corvane
