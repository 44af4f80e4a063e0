#include "Support/PrivateAudioServer.h"

#include "Support/PrintQt.h"
#include "Support/Waiting.h"

#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <signal.h>

#include <algorithm>

namespace corvane {

namespace {

[[noreturn]] void fail(const QString& text) {
    throw std::runtime_error(text.toStdString());
}

QString found(const char* program) {
    return QStandardPaths::findExecutable(QString::fromUtf8(program));
}

QString moduleOf(const QString& device) {
    if (device.endsWith(u"mic"))
        return u"module-remap-source master=%1feed.monitor source_name=%1"_s.arg(device);
    const QString format =
        device == u"micfeed" ? u"rate=44100 channels=1 format=s16le"_s : u"rate=48000 channels=2 format=float32le"_s;
    // Without norewinds PulseAudio's null sinks work in blocks of two seconds, with holes as long.
    return u"module-null-sink sink_name=%1 %2 norewinds=1"_s.arg(device, format);
}

} // namespace

bool PrivateAudioServer::isInstalled(Kind kind) {
    const auto programs = kind == Kind::pulseAudio ? std::vector{"pulseaudio", "pactl", "paplay"}
                                                   : std::vector{"pipewire",    "pipewire-pulse", "wireplumber",
                                                                 "dbus-daemon", "pactl",          "paplay"};
    return std::ranges::none_of(programs, [](const char* program) { return found(program).isEmpty(); });
}

PrivateAudioServer::PrivateAudioServer(Kind kind) : m_kind(kind) {
    for (const char* name : {"run", "state", "home"}) {
        QDir().mkpath(at(name));
        QFile::setPermissions(at(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    for (const char* name : {"XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH", "PIPEWIRE_RUNTIME_DIR"})
        m_environment[QString::fromUtf8(name)] = at("run");
    for (const char* name : {"PULSE_STATE_PATH", "XDG_STATE_HOME"})
        m_environment[QString::fromUtf8(name)] = at("state");
    for (const char* name : {"HOME", "XDG_CONFIG_HOME"})
        m_environment[QString::fromUtf8(name)] = at("home");
    m_environment[u"DBUS_SESSION_BUS_ADDRESS"_s] = u"unix:path="_s + at("run/bus");
    m_environment[u"PULSE_SERVER"_s] = address();
    qputenv("PULSE_SERVER", address().toUtf8());
    start();
}

PrivateAudioServer::~PrivateAudioServer() {
    kill();
    qunsetenv("PULSE_SERVER");
}

QString PrivateAudioServer::address() const {
    return u"unix:"_s + at("run/pulse/native");
}

QString PrivateAudioServer::at(const char* name) const {
    return m_directory.filePath(QString::fromUtf8(name));
}

void PrivateAudioServer::start() {
    QDir().mkpath(at("run/pulse"));
    if (m_kind == Kind::pulseAudio)
        startPulseAudio();
    else
        startPipeWire();
    // The socket is there before it is listened to.
    const auto answers = [this] { return LinuxProcessLauncher().run(u"/usr/bin/env"_s, pactl(u"info"_s)).status == 0; };
    if (!waitFor(answers))
        fail(u"The sound server does not answer"_s);
    // "second" before "micfeed": of equals PulseAudio prefers the older as the default.
    for (const char* device : {"speaker", "second", "micfeed", "mic"})
        loadDevice(QString::fromUtf8(device));
    control(u"set-default-sink speaker"_s);
    control(u"set-default-source mic"_s);
    const auto isSettled = [this] {
        const QString info = control(u"info"_s);
        return info.contains(u"Default Sink: speaker\n") && info.contains(u"Default Source: mic\n");
    };
    if (!waitFor(isSettled))
        fail(u"The devices do not become the default: "_s + control(u"info"_s));
}

void PrivateAudioServer::startPulseAudio() {
    QFile script(at("default.pa"));
    if (!script.open(QIODevice::WriteOnly))
        fail(script.errorString());
    script.write("load-module module-native-protocol-unix auth-anonymous=1 socket=" + at("run/pulse/native").toUtf8() +
                 "\n");
    script.close();
    serve(u"pulseaudio"_s, {u"--daemonize=no"_s, u"--exit-idle-time=-1"_s, u"--use-pid-file=no"_s, u"--realtime=no"_s,
                            u"--high-priority=no"_s, u"-n"_s, u"-F"_s, script.fileName()});
}

void PrivateAudioServer::startPipeWire() {
    serve(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--address=unix:path="_s + at("run/bus")});
    awaitFile(at("run/bus"));
    serve(u"pipewire"_s, {});
    awaitFile(at("run/pipewire-0"));
    serve(u"wireplumber"_s, {});
    // It takes PULSE_RUNTIME_PATH for the place of its socket.
    m_environment[u"PULSE_RUNTIME_PATH"_s] = at("run/pulse");
    serve(u"pipewire-pulse"_s, {});
}

// setpriv ends the program with the test, however that ends.
std::shared_ptr<LaunchedProcess> PrivateAudioServer::launch(const QString& program, const QStringList& arguments) {
    const QString log = at("log");
    QFile(log).open(QIODevice::Append);
    return LinuxProcessLauncher().launch({.executable = u"/usr/bin/setpriv"_s,
                                          .arguments = QStringList{u"--pdeathsig"_s, u"KILL"_s, program} + arguments,
                                          .environment = m_environment,
                                          .standardOutput = u"/dev/null"_s,
                                          .standardError = log},
                                         {});
}

void PrivateAudioServer::serve(const QString& program, const QStringList& arguments) {
    m_processes.push_back(launch(program, arguments));
}

void PrivateAudioServer::awaitFile(const QString& path) {
    if (!waitFor([&path] { return QFile::exists(path); }))
        fail(u"Missing: "_s + path);
}

void PrivateAudioServer::kill() {
    signalAll(SIGKILL);
    for (const auto& process : m_processes)
        (void)waitFor([&process] { return !process->isRunning(); });
    m_processes.clear();
    m_modules.clear();
    for (const char* socket : {"run/pulse/native", "run/pipewire-0", "run/pipewire-0.lock", "run/bus"})
        QFile::remove(at(socket));
}

void PrivateAudioServer::stall() {
    signalAll(SIGSTOP);
}

void PrivateAudioServer::proceed() {
    signalAll(SIGCONT);
}

void PrivateAudioServer::signalAll(int signal) {
    for (const auto& process : m_processes)
        if (process->isRunning())
            ::kill(static_cast<pid_t>(process->processID()), signal);
}

QStringList PrivateAudioServer::pactl(const QString& words) const {
    return QStringList{u"HOME="_s + at("home"), u"pactl"_s} + words.split(u' ');
}

QString PrivateAudioServer::control(const QString& words) {
    const CommandResult result = LinuxProcessLauncher().run(u"/usr/bin/env"_s, pactl(words));
    if (result.status != 0)
        fail(words + u": "_s + result.output);
    return result.output;
}

void PrivateAudioServer::loadDevice(const QString& name) {
    m_modules.push_back({name, control(u"load-module "_s + moduleOf(name)).trimmed()});
    // PipeWire makes the device after it has answered.
    const auto isThere = [this, pattern = u'\t' + name + u'\t'] {
        return (control(u"list short sinks"_s) + control(u"list short sources"_s)).contains(pattern);
    };
    if (!waitFor(isThere))
        fail(u"The device does not appear: "_s + name);
}

void PrivateAudioServer::unloadDevice(const QString& name) {
    const auto module = std::ranges::find(m_modules, name, &Module::name);
    if (module == m_modules.end())
        fail(u"Not loaded: "_s + name);
    control(u"unload-module "_s + module->id);
    m_modules.erase(module);
}

std::shared_ptr<LaunchedProcess> PrivateAudioServer::play(const QString& sink, const QString& path) {
    return launch(u"paplay"_s, {u"--device="_s + sink, path});
}

} // namespace corvane
