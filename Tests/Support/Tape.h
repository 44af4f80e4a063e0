// Records an audio input for a test: what it gave, and when. The handlers run on the input's thread, all else on the
// test's.
#pragma once

#include "Support/Waiting.h"

#include "CorvaneCore/Interfaces/AudioInput.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <iterator>
#include <mutex>
#include <vector>

namespace corvane {

class Tape {
public:
    explicit Tape(std::unique_ptr<AudioInput> audioInput) : input(std::move(audioInput)) {}
    ~Tape() { input->stop(); }

    void start() {
        format = input->format();
        input->start([this](const std::byte* frames, std::size_t count) { take(frames, count); },
                     [this](const AudioInputEvent& event) {
                         const std::lock_guard lock(m_mutex);
                         m_events.push_back(event);
                     });
    }
    // The first channel.
    [[nodiscard]] std::vector<float> sound() const {
        const std::lock_guard lock(m_mutex);
        return m_sound;
    }
    [[nodiscard]] double seconds() const {
        const std::lock_guard lock(m_mutex);
        return static_cast<double>(m_sound.size()) / format.sampleRate;
    }
    [[nodiscard]] std::vector<AudioInputEvent> events() const {
        const std::lock_guard lock(m_mutex);
        return m_events;
    }
    [[nodiscard]] bool waitForEvent(AudioInputEvent::Kind kind) const {
        return waitFor([this, kind] { return std::ranges::count(events(), kind, &AudioInputEvent::kind) > 0; });
    }
    // Until it has given so much more.
    [[nodiscard]] bool waitForMore(double moreSeconds) const {
        return waitFor([this, end = seconds() + moreSeconds] { return seconds() >= end; });
    }
    // The time of the clock less the length of the recording, by the earliest of its next arrivals. What counts is how
    // it changes.
    [[nodiscard]] double secondsBehind() {
        m_behind = never;
        const int end = m_arrivals + 24;
        return waitFor([&] { return m_arrivals >= end; }) ? m_behind.load() : never;
    }
    [[nodiscard]] int arrivals() const { return m_arrivals; }

    const std::unique_ptr<AudioInput> input;
    AudioFormat format; // when it was started

private:
    static constexpr double never = 1e9;

    void take(const std::byte* frames, std::size_t count) {
        const std::lock_guard lock(m_mutex);
        for (std::size_t i = 0; i < count; ++i)
            m_sound.push_back(sample(frames + i * format.bytesPerFrame()));
        const double now = std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
        m_behind = std::min(m_behind.load(), now - static_cast<double>(m_sound.size()) / format.sampleRate);
        ++m_arrivals;
    }
    [[nodiscard]] float sample(const std::byte* at) const {
        if (format.sample == AudioFormat::Sample::float32) {
            float value = 0;
            std::memcpy(&value, at, sizeof value);
            return value;
        }
        std::int16_t value = 0;
        std::memcpy(&value, at, sizeof value);
        return static_cast<float>(value) / 32'768;
    }

    mutable std::mutex m_mutex;
    std::vector<float> m_sound;
    std::vector<AudioInputEvent> m_events;
    std::atomic<int> m_arrivals = 0;
    std::atomic<double> m_behind = never;
};

} // namespace corvane
