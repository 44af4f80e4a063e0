// Microphone and system audio whose frames the test delivers, from whichever thread it likes. A device outlives the
// inputs that capture from it. All but deliver() and report() belong to the thread of the recorder.
#pragma once

#include "CorvaneCore/Interfaces/AudioInput.h"

#include <QCoreApplication>
#include <QStringList>
#include <QThread>

#include <cstdint>
#include <mutex>
#include <numeric>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace corvane {

class FakeAudioDevice {
public:
    AudioFormat format{.sampleRate = 48'000, .channels = 1, .sample = AudioFormat::Sample::signed32};
    std::optional<QString> formatError;
    std::optional<QString> startError;
    std::optional<QString> resumeError;
    QStringList calls; // "start", "pause", "resume", "stop"

    // Frames in `format`; false, and none delivered, if no stream runs.
    bool deliver(std::span<const std::byte> frames) {
        const std::lock_guard lock(m_mutex);
        if (m_isRunning)
            m_onBuffer(frames.data(), frames.size() / format.bytesPerFrame());
        return m_isRunning;
    }
    template<typename Sample>
    bool deliver(const std::vector<Sample>& samples) {
        return deliver(std::as_bytes(std::span(samples)));
    }
    // Mono whole numbers that go on from the last ones delivered, starting with 1.
    bool deliverCounted(std::size_t frames) {
        std::vector<std::int32_t> numbers(frames);
        std::iota(numbers.begin(), numbers.end(), m_counted + 1);
        const bool isDelivered = deliver(numbers);
        m_counted += isDelivered ? static_cast<std::int32_t>(frames) : 0;
        return isDelivered;
    }
    [[nodiscard]] std::int32_t counted() const { return m_counted; }
    void report(const AudioInputEvent& event) {
        const std::lock_guard lock(m_mutex);
        if (m_isRunning)
            m_onEvent(event);
    }

private:
    friend class FakeAudioInput;

    std::mutex m_mutex;
    bool m_isRunning = false;
    AudioInput::BufferHandler m_onBuffer;
    AudioInput::EventHandler m_onEvent;
    std::int32_t m_counted = 0;
};

class FakeAudioInput final : public AudioInput {
public:
    explicit FakeAudioInput(std::shared_ptr<FakeAudioDevice> device) : m_device(std::move(device)) {}
    ~FakeAudioInput() override { FakeAudioInput::stop(); }

    [[nodiscard]] AudioFormat format() override {
        failIf(m_device->formatError);
        return m_device->format;
    }
    void start(BufferHandler onBuffer, EventHandler onEvent) override {
        failIf(m_device->startError);
        const std::lock_guard lock(m_device->m_mutex);
        m_device->m_onBuffer = std::move(onBuffer);
        m_device->m_onEvent = std::move(onEvent);
        run(true, "start");
        m_isStarted = true;
    }
    void pause() override {
        const std::lock_guard lock(m_device->m_mutex);
        run(false, "pause");
    }
    void resume() override {
        failIf(m_device->resumeError);
        const std::lock_guard lock(m_device->m_mutex);
        run(true, "resume");
    }
    void stop() override {
        const std::lock_guard lock(m_device->m_mutex);
        if (std::exchange(m_isStarted, false))
            run(false, "stop");
    }

private:
    static void failIf(const std::optional<QString>& error) {
        if (error)
            throw AudioInputError(*error);
    }
    void run(bool isRunning, const char* call) {
        m_device->m_isRunning = isRunning;
        m_device->calls.append(QString::fromLatin1(call));
    }

    std::shared_ptr<FakeAudioDevice> m_device;
    bool m_isStarted = false;
};

class FakeAudioInputs final : public AudioInputs {
public:
    const std::shared_ptr<FakeAudioDevice> microphoneDevice = std::make_shared<FakeAudioDevice>();
    const std::shared_ptr<FakeAudioDevice> systemDevice = std::make_shared<FakeAudioDevice>();
    // What is captured beside the main thread: the start of the application, which asks for permission.
    const std::shared_ptr<FakeAudioDevice> primedDevice = std::make_shared<FakeAudioDevice>();

    [[nodiscard]] std::unique_ptr<AudioInput> microphone() override {
        return std::make_unique<FakeAudioInput>(microphoneDevice);
    }
    [[nodiscard]] std::unique_ptr<AudioInput> systemAudio() override {
        const bool isPriming = QThread::currentThread() != m_mainThread;
        return std::make_unique<FakeAudioInput>(isPriming ? primedDevice : systemDevice);
    }
    [[nodiscard]] AudioDevices devices() override { return {}; }

private:
    const QThread* const m_mainThread = QThread::currentThread(); // the application object may be gone by then
};

} // namespace corvane
