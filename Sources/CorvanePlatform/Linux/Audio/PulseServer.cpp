#include "CorvanePlatform/Linux/Audio/PulseServer.h"

#include <algorithm>
#include <cstdint>

namespace corvane {

namespace {

const PulseDevice* find(const std::vector<PulseDevice>& devices, const std::string& name) {
    const auto found = std::ranges::find(devices, name, &PulseDevice::name);
    return found == devices.end() ? nullptr : &*found;
}

const PulseDevice* microphone(const PulseServer& server, const std::string& current) {
    // While a device goes away PipeWire names this placeholder as the default. What it stands for is told soon after.
    if (server.defaultSource == "@DEFAULT_SOURCE@")
        return nullptr;
    if (const auto* preferred = find(server.sources, server.defaultSource))
        return preferred;
    if (const auto* present = find(server.sources, current))
        return present;
    return server.sources.empty() ? nullptr : &server.sources.front();
}

pa_sample_format_t pulseSample(AudioFormat::Sample sample) {
    switch (sample) {
    case AudioFormat::Sample::unsigned8:
        return PA_SAMPLE_U8;
    case AudioFormat::Sample::signed16:
        return PA_SAMPLE_S16LE;
    case AudioFormat::Sample::signed24:
        return PA_SAMPLE_S24LE;
    case AudioFormat::Sample::signed32:
        return PA_SAMPLE_S32LE;
    default:
        return PA_SAMPLE_FLOAT32LE;
    }
}

AudioFormat::Sample ownSample(pa_sample_format_t sample) {
    switch (sample) {
    case PA_SAMPLE_U8:
        return AudioFormat::Sample::unsigned8;
    case PA_SAMPLE_S16LE:
        return AudioFormat::Sample::signed16;
    case PA_SAMPLE_S24LE:
        return AudioFormat::Sample::signed24;
    case PA_SAMPLE_S32LE:
        return AudioFormat::Sample::signed32;
    default:
        return AudioFormat::Sample::float32;
    }
}

} // namespace

AudioFormat audioFormat(const pa_sample_spec& samples) {
    return {.sampleRate = static_cast<int>(samples.rate),
            .channels = samples.channels,
            .sample = ownSample(samples.format)};
}

pa_sample_spec sampleSpec(const AudioFormat& format) {
    return {.format = pulseSample(format.sample),
            .rate = static_cast<std::uint32_t>(format.sampleRate),
            .channels = static_cast<std::uint8_t>(format.channels)};
}

std::optional<CaptureTarget> captureTarget(const PulseServer& server, CaptureRole role, const std::string& current) {
    if (role == CaptureRole::microphone) {
        const auto* device = microphone(server, current);
        if (!device)
            return std::nullopt;
        return CaptureTarget{.source = device->name,
                             .description = device->description,
                             .format = {.format = audioFormat(device->samples), .channels = device->channels}};
    }
    const auto* sink = find(server.sinks, server.defaultSink);
    if (!sink || sink->monitor.empty())
        return std::nullopt;
    CaptureTarget target{.source = sink->monitor, .description = sink->description, .format = {}};
    target.format.format = {.sampleRate = static_cast<int>(sink->samples.rate),
                            .channels = std::min<int>(sink->samples.channels, 2),
                            .sample = AudioFormat::Sample::float32};
    pa_channel_map_init_auto(&target.format.channels, static_cast<unsigned>(target.format.format.channels),
                             PA_CHANNEL_MAP_DEFAULT);
    return target;
}

} // namespace corvane
