#include "Support/AudioSignal.h"
#include "Support/PrintQt.h"
#include "Support/PrivateAudioServer.h"
#include "Support/Tape.h"
#include "Support/WavFiles.h"

#include "CorvanePlatform/Linux/Audio/PulseAudioInputs.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <map>
#include <optional>

using namespace corvane;

namespace {

using EventKind = AudioInputEvent::Kind;
using testing::AllOf;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::Field;

auto is(EventKind kind, double gapSeconds, double tolerance) {
    return AllOf(Field(&AudioInputEvent::kind, kind),
                 Field(&AudioInputEvent::gapSeconds, DoubleNear(gapSeconds, tolerance)));
}

// Devices, and one device in other company, differ in their delay by as much as a fragment.
constexpr double tolerance = 0.09;

class PulseAudioInputsTest : public testing::TestWithParam<PrivateAudioServer::Kind> {
protected:
    void SetUp() override {
        if (!PrivateAudioServer::isInstalled(GetParam()))
            GTEST_SKIP() << "the sound server is not installed";
        server.emplace(GetParam());
    }

    // Plays a sound that is told apart by its seed.
    std::shared_ptr<LaunchedProcess> play(const char* sink, unsigned seed) {
        const bool isMicrophone = std::string_view(sink) == "micfeed";
        const AudioFormat format{.sampleRate = isMicrophone ? 44'100 : 48'000,
                                 .channels = isMicrophone ? 1 : 2,
                                 .sample = AudioFormat::Sample::float32};
        const auto sound = speechLike(format.sampleRate, 0.8, seed);
        sounds[seed] = {.rate = format.sampleRate, .samples = sound};
        std::vector<float> frames;
        for (const float sample : sound)
            frames.insert(frames.end(), static_cast<std::size_t>(format.channels), sample);
        const QString path = directory.filePath(u"%1.wav"_s.arg(seed));
        writeWav(path, format, frames);
        return server->play(sink, path);
    }
    // The whole sound, at its own level; its position in frames.
    std::ptrdiff_t expectSound(const Tape& tape, unsigned seed, double fromSecond) {
        const auto [rate, samples] = sounds.at(seed);
        std::vector<float> sound(samples.size() * 2);
        const auto step = files.resampler(rate, tape.format.sampleRate)->process(samples, sound);
        sound.resize(step.produced);
        const auto all = tape.sound();
        const auto from = static_cast<std::size_t>(fromSecond * tape.format.sampleRate);
        const Likeness likeness = findSound(std::span(all).subspan(from), sound);
        EXPECT_GT(likeness.correlation, 0.99);
        EXPECT_NEAR(likeness.gainDecibels, 0, 0.2);
        return static_cast<std::ptrdiff_t>(from) + likeness.position;
    }
    std::ptrdiff_t playInto(Tape& tape, const char* sink, unsigned seed) {
        const double from = tape.seconds();
        const auto player = play(sink, seed);
        EXPECT_TRUE(waitFor([&] { return !player->isRunning(); }));
        EXPECT_TRUE(tape.waitForMore(0.3));
        return expectSound(tape, seed, from);
    }
    void playIntoBoth(Tape& microphone, Tape& system, unsigned seed) {
        const double microphoneFrom = microphone.seconds();
        const double systemFrom = system.seconds();
        const auto a = play("micfeed", seed);
        const auto b = play("speaker", seed + 1);
        EXPECT_TRUE(waitFor([&] { return !a->isRunning(); }));
        EXPECT_TRUE(waitFor([&] { return !b->isRunning(); }));
        EXPECT_TRUE(microphone.waitForMore(0.3));
        EXPECT_TRUE(system.waitForMore(0.3));
        expectSound(microphone, seed, microphoneFrom);
        expectSound(system, seed + 1, systemFrom);
    }
    template<typename Call>
    static QString errorOf(Call call) {
        try {
            call();
        } catch (const AudioInputError& error) {
            return error.text();
        }
        return u"no error"_s;
    }

    std::optional<PrivateAudioServer> server;
    PulseAudioInputs inputs;
    QTemporaryDir directory;
    SndfileAudioFiles files;
    struct Sound {
        int rate = 0;
        std::vector<float> samples;
    };
    std::map<unsigned, Sound> sounds;
};

INSTANTIATE_TEST_SUITE_P(Servers, PulseAudioInputsTest,
                         testing::Values(PrivateAudioServer::Kind::pulseAudio, PrivateAudioServer::Kind::pipeWire),
                         [](const auto& server) {
                             return server.param == PrivateAudioServer::Kind::pulseAudio ? "PulseAudio" : "PipeWire";
                         });

} // namespace

TEST_P(PulseAudioInputsTest, RecordsWhatIsPlayedKeepsTheStreamsApartAndFollowsTheDefault) {
    const AudioDevices devices = inputs.devices();
    EXPECT_THAT(devices.server, testing::Not(QString()));
    EXPECT_THAT(devices.microphones,
                ElementsAre(AllOf(Field(&AudioDevice::id, u"mic"_s), Field(&AudioDevice::isDefault, true))));
    EXPECT_EQ(devices.outputs.size(), 3U);

    Tape microphone(inputs.microphone());
    Tape system(inputs.systemAudio());
    microphone.start();
    system.start();
    EXPECT_EQ(microphone.format, devices.microphones.front().format);
    EXPECT_EQ(system.format, (AudioFormat{48'000, 2, AudioFormat::Sample::float32}));
    playIntoBoth(microphone, system, 1);
    EXPECT_TRUE(microphone.events().empty());
    EXPECT_TRUE(system.events().empty());

    const double behind = system.secondsBehind();
    server->control(u"set-default-sink second"_s);
    ASSERT_TRUE(system.waitForEvent(EventKind::deviceChanged));
    playInto(system, "second", 3);
    EXPECT_NEAR(system.secondsBehind(), behind, tolerance) << "the change cost no time";
}

TEST_P(PulseAudioInputsTest, ALostMicrophoneIsSilenceUntilOneIsBack) {
    Tape microphone(inputs.microphone());
    microphone.start();
    const double behind = microphone.secondsBehind();
    server->unloadDevice(u"mic"_s);
    ASSERT_TRUE(microphone.waitForEvent(EventKind::deviceLost));
    EXPECT_EQ(errorOf([&] { (void)inputs.microphone()->format(); }), u"There is no microphone.");
    EXPECT_EQ(errorOf([&] { Tape(inputs.microphone()).start(); }), u"There is no microphone.");
    server->loadDevice(u"mic"_s);
    ASSERT_TRUE(microphone.waitForEvent(EventKind::deviceBack));
    playInto(microphone, "micfeed", 4);
    EXPECT_NEAR(microphone.secondsBehind(), behind, tolerance);
    EXPECT_THAT(microphone.events(), ElementsAre(is(EventKind::deviceLost, 0, 0), is(EventKind::deviceBack, 1, 0.9)));
}

TEST_P(PulseAudioInputsTest, ADaemonThatDiesAndComesBackCostsNoTimeOfTheRecording) {
    Tape system(inputs.systemAudio());
    Tape microphone(inputs.microphone());
    system.start();
    microphone.start();
    const double systemBehind = system.secondsBehind();
    const double microphoneBehind = microphone.secondsBehind();
    QElapsedTimer hole;
    hole.start();
    server->kill();
    ASSERT_TRUE(system.waitForEvent(EventKind::deviceLost));
    EXPECT_EQ(errorOf([&] { (void)inputs.devices(); }), u"There is no sound server.");
    EXPECT_EQ(errorOf([&] { (void)inputs.systemAudio()->format(); }), u"There is no sound server.");
    ASSERT_TRUE(system.waitForMore(0.3)) << "silence is fed in the meantime";
    server->start();
    ASSERT_TRUE(system.waitForEvent(EventKind::deviceBack));
    ASSERT_TRUE(microphone.waitForEvent(EventKind::deviceBack));
    const double longest = static_cast<double>(hole.elapsed()) / 1000;
    playIntoBoth(microphone, system, 5);
    EXPECT_NEAR(system.secondsBehind(), systemBehind, tolerance);
    EXPECT_NEAR(microphone.secondsBehind(), microphoneBehind, tolerance);
    const auto events = system.events();
    EXPECT_THAT(events, testing::Contains(AllOf(Field(&AudioInputEvent::kind, EventKind::deviceBack),
                                                Field(&AudioInputEvent::gapSeconds, testing::Gt(0.5)),
                                                Field(&AudioInputEvent::gapSeconds, testing::Lt(longest)))));
}

TEST_P(PulseAudioInputsTest, AStalledDaemonCostsNoTimeOfTheRecording) {
    Tape system(inputs.systemAudio());
    system.start();
    const double behind = system.secondsBehind();
    QElapsedTimer stall;
    stall.start();
    server->stall();
    QElapsedTimer patience;
    patience.start();
    EXPECT_EQ(errorOf([&] { inputs.microphone()->start([](auto...) {}, {}); }), u"The sound server does not answer.");
    EXPECT_NEAR(static_cast<double>(patience.elapsed()) / 1000, 3, 0.3);
    server->proceed();
    const double stalled = static_cast<double>(stall.elapsed()) / 1000;
    ASSERT_TRUE(system.waitForMore(0.3));
    playInto(system, "speaker", 7);
    EXPECT_NEAR(system.secondsBehind(), behind, tolerance);
    // A null sink makes up for some of the time, or for all of it.
    double gaps = 0;
    for (const AudioInputEvent& event : system.events()) {
        EXPECT_EQ(event.kind, EventKind::gap);
        gaps += event.gapSeconds;
    }
    EXPECT_LT(gaps, stalled + 0.2);
}

TEST_P(PulseAudioInputsTest, AStartKeepsToTheFormatThatWasAskedFor) {
    const auto system = inputs.systemAudio();
    const AudioFormat announced = system->format();
    server->control(u"set-default-sink micfeed"_s);
    ASSERT_TRUE(waitFor([this] {
        const auto outputs = inputs.devices().outputs;
        return std::ranges::find(outputs, u"micfeed"_s, &AudioDevice::id)->isDefault;
    }));
    system->start([](auto...) {}, {});
    EXPECT_EQ(system->format(), announced);
    system->stop();
}

TEST_P(PulseAudioInputsTest, NoHandlerIsCalledWhileNotRunning) {
    Tape system(inputs.systemAudio());
    Tape other(inputs.microphone());
    other.start(); // its frames are the time that goes by
    for (int round = 0; round < 2; ++round) {
        system.start();
        EXPECT_TRUE(system.waitForMore(0.1));
        system.input->pause();
        const int paused = system.arrivals();
        EXPECT_EQ(system.input->format(), system.format);
        EXPECT_TRUE(other.waitForMore(0.2));
        EXPECT_EQ(system.arrivals(), paused);
        system.input->resume();
        EXPECT_TRUE(system.waitForMore(0.1));
        system.input->stop();
        system.input->stop();
        const int stopped = system.arrivals();
        EXPECT_TRUE(other.waitForMore(0.2));
        EXPECT_EQ(system.arrivals(), stopped);
    }
    EXPECT_TRUE(system.events().empty());

    system.start();
    system.input->pause();
    server->kill();
    EXPECT_EQ(errorOf([&] { system.input->resume(); }), u"There is no sound server.");
    EXPECT_EQ(system.input->format(), system.format);
    server->start();
    system.input->resume();
    EXPECT_TRUE(system.waitForMore(0.1));
}

namespace {

// PipeWire wakes a device that is listened to.
class PulseAudioSuspensionTest : public PulseAudioInputsTest {};
INSTANTIATE_TEST_SUITE_P(PulseAudio, PulseAudioSuspensionTest, testing::Values(PrivateAudioServer::Kind::pulseAudio));

} // namespace

TEST_P(PulseAudioSuspensionTest, ASuspendedDeviceIsAHoleOfItsLength) {
    Tape system(inputs.systemAudio());
    Tape microphone(inputs.microphone());
    system.start();
    microphone.start();
    const double behind = system.secondsBehind();
    QElapsedTimer hole;
    hole.start();
    server->control(u"suspend-sink speaker 1"_s);
    ASSERT_TRUE(microphone.waitForMore(1.3));
    server->control(u"suspend-sink speaker 0"_s);
    const double longest = static_cast<double>(hole.elapsed()) / 1000;
    ASSERT_TRUE(system.waitForEvent(EventKind::gap));
    EXPECT_NEAR(system.secondsBehind(), behind, tolerance);
    EXPECT_THAT(system.events(), ElementsAre(AllOf(Field(&AudioInputEvent::kind, EventKind::gap),
                                                   Field(&AudioInputEvent::gapSeconds, testing::Gt(1.05)),
                                                   Field(&AudioInputEvent::gapSeconds, testing::Lt(longest + 0.2)))));
    EXPECT_TRUE(microphone.events().empty());
}
