// Real WAV files on a disk that fails when the test says so. Thread-safe as far as the real ones are.
#pragma once

#include "CorvanePlatform/Linux/Audio/SndfileAudioFiles.h"

#include <atomic>

namespace corvane {

class FailingAudioFiles final : public AudioFiles {
public:
    std::atomic<bool> creates = true;
    std::atomic<std::int64_t> room = INT64_MAX;     // frames that the disk still takes
    std::atomic<std::int64_t> readable = INT64_MAX; // frames of each file that can be read, as floats

    [[nodiscard]] std::unique_ptr<AudioFileWriter> create(const QString& path, const AudioFormat& format) override {
        if (!creates)
            throw AudioFileError(QStringLiteral("no file can be made"));
        return std::make_unique<Writer>(m_files.create(path, format), room);
    }
    [[nodiscard]] std::unique_ptr<AudioFileReader> open(const QString& path) override {
        return std::make_unique<Reader>(m_files.open(path), readable);
    }
    [[nodiscard]] std::unique_ptr<AudioResampler> resampler(int fromRate, int toRate) override {
        return m_files.resampler(fromRate, toRate);
    }

private:
    class Writer final : public AudioFileWriter {
    public:
        Writer(std::unique_ptr<AudioFileWriter> file, std::atomic<std::int64_t>& room)
            : m_file(std::move(file)), m_room(room) {}
        [[nodiscard]] bool write(const std::byte* frames, std::size_t frameCount) override {
            if (m_room < static_cast<std::int64_t>(frameCount))
                return false;
            m_room -= static_cast<std::int64_t>(frameCount);
            return m_file->write(frames, frameCount);
        }
        void close() override { m_file->close(); }

    private:
        std::unique_ptr<AudioFileWriter> m_file;
        std::atomic<std::int64_t>& m_room;
    };

    class Reader final : public AudioFileReader {
    public:
        Reader(std::unique_ptr<AudioFileReader> file, const std::atomic<std::int64_t>& readable)
            : m_file(std::move(file)), m_readable(readable) {}
        [[nodiscard]] AudioFormat format() const override { return m_file->format(); }
        [[nodiscard]] std::int64_t frameCount() const override { return m_file->frameCount(); }
        [[nodiscard]] std::size_t readRaw(std::span<std::byte> bytes) override { return m_file->readRaw(bytes); }
        [[nodiscard]] std::size_t readFloat(std::span<float> samples) override {
            const std::size_t frames = m_file->readFloat(samples);
            m_position += static_cast<std::int64_t>(frames);
            if (m_position > m_readable)
                throw AudioFileError(QStringLiteral("the disk has a bad sector"));
            return frames;
        }
        void seek(std::int64_t frame) override {
            m_file->seek(frame);
            m_position = frame;
        }

    private:
        std::unique_ptr<AudioFileReader> m_file;
        const std::atomic<std::int64_t>& m_readable;
        std::int64_t m_position = 0;
    };

    SndfileAudioFiles m_files;
};

} // namespace corvane
