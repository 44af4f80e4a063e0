// Watches one captured track while it is written: its level, its silence, what was lost. The capture thread feeds it,
// any thread reads it; nothing in it blocks or allocates while it is fed.
#pragma once

#include "CorvaneCore/Interfaces/AudioFormat.h"
#include "CorvaneCore/Interfaces/AudioInput.h"

#include <QString>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace corvane {

// What is known of a track at one moment.
struct TrackHealth {
    double recordedSeconds = 0;       // written to the disk
    double peak = 0;                  // highest sample since the last reading, 0 to 1
    double rms = 0;                   // root mean square since the last reading, 0 to 1
    double silentSeconds = 0;         // of it digital silence
    double currentSilenceSeconds = 0; // of digital silence up to now without a break
    double lostSeconds = 0;           // delivered by the device but not written: no open file, or a full disk
    double gapSeconds = 0;            // never delivered; silence stands for it
    std::int64_t gaps = 0;
    std::int64_t failedWrites = 0;
    std::vector<QString> deviceChanges; // what happened, oldest first, at most the last 100
    bool hasDevice = true;
    bool isLosing = false; // the last of what was delivered could not be written

    friend bool operator==(const TrackHealth&, const TrackHealth&) = default;
};

// How a change of the device begins in TrackHealth::deviceChanges, and so in the report on the disk: never translated.
namespace deviceChangeWords {
inline const QString changedTo = QStringLiteral("changed to "); // the device's name follows
inline const QString back = QStringLiteral("back: ");           // likewise
inline const QString lost = QStringLiteral("lost");
} // namespace deviceChangeWords

class TrackMonitor {
public:
    enum class Outcome { written, noFile, writeFailed };

    // Capture thread. `frames` are interleaved in `format`.
    void buffer(const std::byte* frames, std::size_t frameCount, const AudioFormat& format, Outcome outcome);
    void event(const AudioInputEvent& event);

    // Any thread. Starts new peak and root-mean-square readings.
    [[nodiscard]] TrackHealth read();

private:
    std::atomic<int> m_sampleRate{0};
    std::atomic<std::int64_t> m_writtenFrames{0};
    std::atomic<std::int64_t> m_lostFrames{0};
    std::atomic<std::int64_t> m_silentFrames{0};
    std::atomic<std::int64_t> m_currentSilenceFrames{0};
    std::atomic<std::int64_t> m_failedWrites{0};
    std::atomic<bool> m_isLosing{false};
    std::atomic<float> m_peak{0};
    std::atomic<double> m_squares{0};
    std::atomic<std::int64_t> m_samples{0};

    std::mutex m_eventLock; // events are rare
    double m_gapSeconds = 0;
    std::int64_t m_gaps = 0;
    std::vector<QString> m_deviceChanges;
    bool m_hasDevice = true;
};

} // namespace corvane
