// What a sound server has and prefers, and which of its devices Corvane records. Values and pure functions.
#pragma once

#include "CorvaneCore/Interfaces/AudioInput.h"

#include <QString>

#include <pulse/channelmap.h>
#include <pulse/sample.h>

#include <optional>
#include <string>
#include <vector>

namespace corvane {

struct PulseDevice {
    std::string name;
    std::string monitor; // of a sink: the source that hears what it plays
    QString description;
    pa_sample_spec samples{};
    pa_channel_map channels{};
};

struct PulseServer {
    QString text; // name and version
    std::string defaultSink;
    std::string defaultSource;
    std::vector<PulseDevice> sinks;
    std::vector<PulseDevice> sources; // without the monitors of sinks
};

enum class CaptureRole { microphone, systemAudio };

struct CaptureFormat {
    AudioFormat format;
    pa_channel_map channels{};
};

struct CaptureTarget {
    std::string source;
    QString description;
    CaptureFormat format;
};

// The source to record in a role; nothing if there is none now. For the microphone never the monitor of a sink, also
// where that is the default source: then `current`, the source recorded so far, or else the first real one. For system
// audio never anything but the monitor of the default sink.
[[nodiscard]] std::optional<CaptureTarget> captureTarget(const PulseServer& server, CaptureRole role,
                                                         const std::string& current = {});

// The device's own format where AudioFormat can name it, and float32 otherwise.
[[nodiscard]] AudioFormat audioFormat(const pa_sample_spec& samples);
[[nodiscard]] pa_sample_spec sampleSpec(const AudioFormat& format);

} // namespace corvane
