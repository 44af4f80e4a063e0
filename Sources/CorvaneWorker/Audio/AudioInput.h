// A media file opened for FFmpeg through a file descriptor, so that no name is ever taken for a protocol or an option
// and nothing but a regular file is read. Used by AudioDecoder; one thread.
#pragma once

#include <QString>

extern "C" {
#include <libavformat/avformat.h>
}

#include <cstdint>

namespace corvane {

class AudioInput {
public:
    // Opens the file and finds its streams. Throws WorkerError.
    explicit AudioInput(const QString& path);
    ~AudioInput();
    AudioInput(const AudioInput&) = delete;
    AudioInput& operator=(const AudioInput&) = delete;

    [[nodiscard]] AVFormatContext* format() const { return m_format; }
    // How much of the file has been read, 0.0 to 1.0.
    [[nodiscard]] double fractionRead() const;

private:
    void openFile(const QString& path);
    void openFormat();
    void close();

    static int readPacket(void* self, std::uint8_t* buffer, int size);
    static std::int64_t seek(void* self, std::int64_t offset, int whence);

    QString m_name; // for messages
    int m_fd = -1;
    std::int64_t m_size = 0;
    AVIOContext* m_io = nullptr;
    AVFormatContext* m_format = nullptr;
};

} // namespace corvane
