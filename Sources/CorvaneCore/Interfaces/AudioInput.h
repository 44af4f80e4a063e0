// Capture of sound: the default microphone, or the mix of everything that the computer plays. A stream follows the user
// when the default device changes or vanishes, and a sound server that dies and comes back does not end it. Time in
// which no device delivers is filled with silence, so that what is recorded keeps its length; how much is known.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneCore/Interfaces/AudioFormat.h"

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace corvane {

class AudioInputError : public Error {
public:
    using Error::Error;
};

// What a user should know of a running capture.
struct AudioInputEvent {
    enum class Kind {
        deviceChanged, // capture goes on from another device
        deviceLost,    // no device to capture from, or the sound server is gone; silence until one is back
        deviceBack,    // after deviceLost
        gap,           // frames that never came, replaced by silence
    };

    Kind kind = Kind::deviceChanged;
    QString device;        // what a person calls it; empty for deviceLost
    double gapSeconds = 0; // of all but deviceLost: the length of the silence put in
};

// One capture stream. Made, started, paused and stopped on one thread; destruction stops it.
class AudioInput {
public:
    // Frames in format(), on a thread of the input's own while the stream runs. Must not block for long and must not
    // call the input.
    using BufferHandler = std::function<void(const std::byte* frames, std::size_t frameCount)>;
    // On the same thread.
    using EventHandler = std::function<void(const AudioInputEvent&)>;

    virtual ~AudioInput() = default;

    // The present device's own format; for system audio 32-bit float. What it gave before a start is kept to by that
    // start, and once a stream was started its format stays what it was then, whatever the device; a stopped stream
    // takes a new one. Throws AudioInputError if there is no device or no sound server.
    [[nodiscard]] virtual AudioFormat format() = 0;

    // Returns when frames flow or throws AudioInputError within a few seconds. Neither handler is called before that
    // or after stop() or pause() has returned.
    virtual void start(BufferHandler onBuffer, EventHandler onEvent) = 0;
    // Holds the stream with its format; resume() throws as start() does, and then the stream stays paused.
    virtual void pause() = 0;
    virtual void resume() = 0;
    virtual void stop() = 0; // safe to repeat
};

struct AudioDevice {
    QString id;
    QString name; // what a person calls it
    bool isDefault = false;
    AudioFormat format;
};

struct AudioDevices {
    QString server; // name and version of the sound server
    std::vector<AudioDevice> microphones;
    std::vector<AudioDevice> outputs; // whose sound system audio captures
};

class AudioInputs {
public:
    virtual ~AudioInputs() = default;

    // Both on any thread.
    [[nodiscard]] virtual std::unique_ptr<AudioInput> microphone() = 0;
    [[nodiscard]] virtual std::unique_ptr<AudioInput> systemAudio() = 0;

    // Blocks for at most a few seconds. Throws AudioInputError if no sound server answers.
    [[nodiscard]] virtual AudioDevices devices() = 0;
};

} // namespace corvane
