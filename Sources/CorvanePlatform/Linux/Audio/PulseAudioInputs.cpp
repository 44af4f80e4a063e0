#include "CorvanePlatform/Linux/Audio/PulseAudioInputs.h"

#include "CorvanePlatform/Linux/Audio/PulseCapture.h"

namespace corvane {

namespace {

constexpr auto answerLimit = std::chrono::seconds(3);

class PulseAudioInput final : public AudioInput {
public:
    explicit PulseAudioInput(CaptureRole role) : m_role(role) {}
    ~PulseAudioInput() override { end(); }

    AudioFormat format() override {
        if (m_format)
            return m_format->format;
        const auto target = captureTarget(askServer(answerLimit), m_role);
        if (!target)
            throw AudioInputError(pulsewords::noDevice(m_role));
        m_announced = target->format;
        return m_announced->format;
    }

    void start(BufferHandler onBuffer, EventHandler onEvent) override {
        const auto announced = m_announced;
        stop();
        m_format = announced;
        m_handlers = {.onBuffer = std::move(onBuffer), .onEvent = std::move(onEvent)};
        try {
            resume();
        } catch (...) {
            stop();
            throw;
        }
    }

    void pause() override { end(); }

    void resume() override {
        if (m_capture || !m_handlers.onBuffer)
            return;
        m_capture = std::make_unique<PulseCapture>(m_role, m_format, m_handlers);
        m_format = m_capture->format();
    }

    void stop() override {
        end();
        m_handlers = {};
        m_format.reset();
        m_announced.reset();
    }

private:
    void end() { m_capture.reset(); }

    CaptureRole m_role;
    std::optional<CaptureFormat> m_format;    // while started
    std::optional<CaptureFormat> m_announced; // what its next start has to keep to
    PulseCapture::Handlers m_handlers;
    std::unique_ptr<PulseCapture> m_capture; // while not paused
};

AudioDevice listed(const PulseDevice& device, const std::string& preferred) {
    return {.id = QString::fromStdString(device.name),
            .name = device.description,
            .isDefault = device.name == preferred,
            .format = audioFormat(device.samples)};
}

} // namespace

std::unique_ptr<AudioInput> PulseAudioInputs::microphone() {
    return std::make_unique<PulseAudioInput>(CaptureRole::microphone);
}

std::unique_ptr<AudioInput> PulseAudioInputs::systemAudio() {
    return std::make_unique<PulseAudioInput>(CaptureRole::systemAudio);
}

AudioDevices PulseAudioInputs::devices() {
    const PulseServer server = askServer(answerLimit);
    AudioDevices devices{.server = server.text, .microphones = {}, .outputs = {}};
    for (const PulseDevice& source : server.sources)
        devices.microphones.push_back(listed(source, server.defaultSource));
    for (const PulseDevice& sink : server.sinks)
        devices.outputs.push_back(listed(sink, server.defaultSink));
    return devices;
}

} // namespace corvane
