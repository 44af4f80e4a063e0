// The WAV file that grows. Every write is followed by a true header, so that a killed process leaves a whole file, and
// a thread of its own hands it to the disk once a second, or sooner when it grows fast. Owned by a recorder or a
// joiner, one thread at a time.
#pragma once

#include "CorvaneCore/Interfaces/AudioFiles.h"
#include "CorvanePlatform/Linux/UniqueFd.h"

#include <atomic>
#include <cstdint>
#include <thread>

namespace corvane {

// Written without libsndfile, which offers only a choice of two evils: a WAV file whose lengths wrap silently past 4
// GiB, or an RF64 file that has WAVE_FORMAT_EXTENSIBLE from its first byte, which simple readers reject.
class WavFileWriter final : public AudioFileWriter {
public:
    // A new file that only its owner may read, which gets its name once its header is written. An existing file of this
    // name is replaced, not overwritten: whoever reads it keeps what he has, and a link or a FIFO is never followed or
    // waited for. Throws AudioFileError, and then what was there is still there.
    WavFileWriter(const QString& path, const AudioFormat& format);
    ~WavFileWriter() override;

    [[nodiscard]] bool write(const std::byte* frames, std::size_t frameCount) override;
    void close() override;

private:
    void flushNowAndThen();
    void flush();
    void wakeFlusher();
    // False with errno.
    bool writeHeader();
    // 0 or the errno of what went wrong since the file was made.
    int finish();

    QString m_name;
    AudioFormat m_format;
    UniqueFd m_directory;
    UniqueFd m_file;
    std::uint64_t m_headerBytes = 0;
    std::uint64_t m_dataBytes = 0;
    std::uint64_t m_handedOverBytes = 0; // of the data, when the flusher was last woken
    std::atomic<bool> m_unflushed = true;
    std::atomic<int> m_flushError = 0;
    std::atomic<bool> m_ending = false;
    UniqueFd m_wake; // becomes readable when the flusher has something to do before its second is over
    std::thread m_flusher;
};

} // namespace corvane
