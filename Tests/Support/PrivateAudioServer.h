// A sound server of its own for a test or a script: no hardware, no user's devices, everything below a temporary
// directory. It plays into "speaker" (48 kHz, stereo, float) and "second" (the same), and what is played into "micfeed"
// (44.1 kHz, mono, 16 bits) is heard by the microphone "mic", which PipeWire makes 48 kHz and stereo. This process's
// libpulse, and every child's, is pointed at it while it lives. Main thread; its processes end with it, also when the
// test is killed.
#pragma once

#include "CorvaneCore/Interfaces/ProcessLauncher.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <ostream>
#include <stdexcept>
#include <vector>

namespace corvane {

class PrivateAudioServer {
public:
    enum class Kind { pulseAudio, pipeWire };

    static bool isInstalled(Kind kind);

    // Starts it and waits until its devices are there. Throws std::runtime_error.
    explicit PrivateAudioServer(Kind kind);
    ~PrivateAudioServer();

    [[nodiscard]] QString address() const; // for PULSE_SERVER

    void start();
    void kill();    // SIGKILL to all of it
    void stall();   // SIGSTOP
    void proceed(); // SIGCONT

    // The words of `pactl`; what it printed. Throws std::runtime_error if it fails.
    QString control(const QString& words);
    // One of the four; or a further sink, or as "NAMEmic" a microphone that hears the sink "NAMEmicfeed".
    void loadDevice(const QString& name);
    void unloadDevice(const QString& name);

    // Plays a WAV file into a sink. The process ends when all was heard.
    [[nodiscard]] std::shared_ptr<LaunchedProcess> play(const QString& sink, const QString& path);

private:
    struct Module {
        QString name;
        QString id;
    };
    [[nodiscard]] QString at(const char* name) const;
    [[nodiscard]] QStringList pactl(const QString& words) const;
    [[nodiscard]] std::shared_ptr<LaunchedProcess> launch(const QString& program, const QStringList& arguments);
    void serve(const QString& program, const QStringList& arguments);
    void startPulseAudio();
    void startPipeWire();
    void signalAll(int signal);
    void awaitFile(const QString& path);

    Kind m_kind;
    QTemporaryDir m_directory;
    ProcessEnvironment m_environment;
    std::vector<std::shared_ptr<LaunchedProcess>> m_processes;
    std::vector<Module> m_modules;
};

inline void PrintTo(PrivateAudioServer::Kind kind, std::ostream* stream) {
    *stream << (kind == PrivateAudioServer::Kind::pulseAudio ? "PulseAudio" : "PipeWire");
}

} // namespace corvane
