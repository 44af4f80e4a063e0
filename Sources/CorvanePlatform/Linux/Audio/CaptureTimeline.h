// How many frames a capture should have given by now, going by the clock. Knows nothing of sound servers; a value that
// the capture's thread keeps.
#pragma once

#include <chrono>
#include <cstdint>

namespace corvane {

// The line runs through the earliest of the first arrivals, so that what is missing of a device that delivers is its
// present delay, near zero. A device's clock is not the computer's: the line follows by at most a thousandth, far more
// than crystals differ and far less than a hole.
class CaptureTimeline {
public:
    using Clock = std::chrono::steady_clock;

    explicit CaptureTimeline(int sampleRate) : m_sampleRate(sampleRate) {}

    [[nodiscard]] bool hasBegun() const { return m_begun != Clock::time_point(); }
    // Frames from a device have arrived; the first begin the line.
    void delivered(std::int64_t frames, Clock::time_point now);
    // Silence was put in the place of frames.
    void filled(std::int64_t frames) { m_frames += static_cast<double>(frames); }
    // Frames that are due and neither came nor were filled; below zero if more came than time went by.
    [[nodiscard]] std::int64_t missing(Clock::time_point now) const;
    [[nodiscard]] Clock::duration sinceDelivery(Clock::time_point now) const { return now - m_lastDelivery; }

private:
    [[nodiscard]] double expected(Clock::time_point now) const;

    double m_sampleRate;
    double m_frames = 0;
    double m_offset = 0; // frames that the line has at m_begun
    Clock::time_point m_begun;
    Clock::time_point m_lastDelivery;
};

} // namespace corvane
