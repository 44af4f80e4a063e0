// Real WAV files on a disk that fails when the test says so. Thread-safe as far as the real ones are.
#pragma once

#include "CorvanePlatform/Linux/Audio/SndfileAudioFiles.h"

#include <atomic>

namespace corvane {

class FailingAudioFiles final : public AudioFiles {
public:
    std::atomic<bool> creates = true;
    std::atomic<std::int64_t> room = INT64_MAX; // frames that the disk still takes

    [[nodiscard]] std::unique_ptr<AudioFileWriter> create(const QString& path, const AudioFormat& format) override {
        if (!creates)
            throw AudioFileError(QStringLiteral("no file can be made"));
        return std::make_unique<Writer>(m_files.create(path, format), room);
    }
    [[nodiscard]] std::unique_ptr<AudioFileReader> open(const QString& path) override { return m_files.open(path); }
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

    SndfileAudioFiles m_files;
};

} // namespace corvane
