// What the capture decides without a sound server: which device, and how much silence.
#include "CorvanePlatform/Linux/Audio/CaptureTimeline.h"
#include "CorvanePlatform/Linux/Audio/PulseServer.h"

#include <gmock/gmock.h>

using namespace corvane;
using namespace std::chrono_literals;

namespace {

PulseDevice device(const char* name, const char* monitor, pa_sample_format_t sample, int channels) {
    return {.name = name,
            .monitor = monitor,
            .description = QString::fromUtf8(name),
            .samples = {.format = sample, .rate = 48'000, .channels = static_cast<std::uint8_t>(channels)},
            .channels = {}};
}

PulseServer server(const char* sink, const char* source) {
    PulseServer server;
    server.defaultSink = sink;
    server.defaultSource = source;
    server.sinks = {device("hdmi", "hdmi.monitor", PA_SAMPLE_S32LE, 6),
                    device("horn", "horn.monitor", PA_SAMPLE_S16LE, 1)};
    server.sources = {device("desk", "", PA_SAMPLE_S16BE, 1), device("head", "", PA_SAMPLE_S24LE, 2)};
    return server;
}

std::string microphone(const char* source, const char* current = "") {
    const auto target = captureTarget(server("hdmi", source), CaptureRole::microphone, current);
    return target ? target->source : "";
}

// Fragments of 85 ms, whose clock may be off, at one frame a millisecond.
struct Device {
    CaptureTimeline timeline{1000};
    CaptureTimeline::Clock::time_point now{1h};
    double owed = 0;

    void run(std::chrono::milliseconds time, double clock = 1) {
        for (const auto end = now + time; now < end;) {
            now += 85ms;
            owed += 85 * clock;
            timeline.delivered(static_cast<std::int64_t>(owed), now);
            owed -= static_cast<double>(static_cast<std::int64_t>(owed));
        }
    }
};

} // namespace

TEST(CaptureTarget, TheMicrophoneIsNeverAMonitorNorAPlaceholder) {
    EXPECT_EQ(microphone("head"), "head");
    EXPECT_EQ(microphone("hdmi.monitor"), "desk");
    EXPECT_EQ(microphone("hdmi.monitor", "head"), "head") << "what is recorded already";
    EXPECT_EQ(microphone(""), "desk");
    EXPECT_EQ(microphone("@DEFAULT_SOURCE@", "head"), "");
    PulseServer deaf = server("hdmi", "hdmi.monitor");
    deaf.sources.clear();
    EXPECT_FALSE(captureTarget(deaf, CaptureRole::microphone, "head"));
    EXPECT_EQ(captureTarget(server("", "head"), CaptureRole::microphone)->format.format,
              (AudioFormat{48'000, 2, AudioFormat::Sample::signed24}));
    EXPECT_EQ(captureTarget(server("", "desk"), CaptureRole::microphone)->format.format,
              (AudioFormat{48'000, 1, AudioFormat::Sample::float32}))
        << "no big-endian samples";
}

TEST(CaptureTarget, SystemAudioIsTheDefaultOutputAndNothingElse) {
    for (const auto& [sink, channels] : {std::pair{"hdmi", 2}, std::pair{"horn", 1}}) {
        const auto target = captureTarget(server(sink, "head"), CaptureRole::systemAudio);
        ASSERT_TRUE(target);
        EXPECT_EQ(target->source, std::string(sink) + ".monitor");
        EXPECT_EQ(target->format.format, (AudioFormat{48'000, channels, AudioFormat::Sample::float32}));
        EXPECT_EQ(target->format.channels.channels, channels);
    }
    for (const char* sink : {"", "@DEFAULT_SINK@", "gone"})
        EXPECT_FALSE(captureTarget(server(sink, "head"), CaptureRole::systemAudio, "hdmi.monitor")) << sink;
}

TEST(CaptureTimeline, AHoleIsAsLongAsTheClockSaysWhateverTheDevicesOwnClock) {
    for (const double clock : {1.0, 1.0005, 0.9995}) {
        Device device;
        device.run(5min, clock);
        EXPECT_NEAR(static_cast<double>(device.timeline.missing(device.now)), 0, 10) << clock;
        device.now += 3s;
        EXPECT_EQ(device.timeline.sinceDelivery(device.now), 3s);
        EXPECT_NEAR(static_cast<double>(device.timeline.missing(device.now)), 3000, 10);
        device.timeline.filled(3000);
        device.run(1s, clock);
        EXPECT_NEAR(static_cast<double>(device.timeline.missing(device.now)), 0, 20);
    }
}

TEST(CaptureTimeline, WhatCameAfterItWasFilledIsTakenOffTheNextHole) {
    Device device;
    device.timeline.delivered(300, device.now); // what had gathered before
    device.run(10s);
    EXPECT_NEAR(static_cast<double>(device.timeline.missing(device.now)), 0, 2);
    device.now += 6s;
    device.timeline.filled(2000);
    device.timeline.delivered(6000, device.now); // the stalled server gives all of it after all
    EXPECT_NEAR(static_cast<double>(device.timeline.missing(device.now)), -2000, 10);
    device.now += 3s;
    EXPECT_NEAR(static_cast<double>(device.timeline.missing(device.now)), 1000, 10);
}
