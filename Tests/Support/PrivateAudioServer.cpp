#include "Support/PrivateAudioServer.h"

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
        return QStringLiteral("module-remap-source master=%1feed.monitor source_name=%1").arg(device);
    const QString format = device == u"micfeed" ? QStringLiteral("rate=44100 channels=1 format=s16le")
                                                : QStringLiteral("rate=48000 channels=2 format=float32le");
    // Without norewinds PulseAudio's null sinks work in blocks of two seconds, with holes as long.
    return QStringLiteral("module-null-sink sink_name=%1 %2 norewinds=1").arg(device, format);
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
    m_environment[QStringLiteral("DBUS_SESSION_BUS_ADDRESS")] = QStringLiteral("unix:path=") + at("run/bus");
    m_environment[QStringLiteral("PULSE_SERVER")] = address();
    qputenv("PULSE_SERVER", address().toUtf8());
    start();
}

PrivateAudioServer::~PrivateAudioServer() {
    kill();
    qunsetenv("PULSE_SERVER");
}

QString PrivateAudioServer::address() const {
    return QStringLiteral("unix:") + at("run/pulse/native");
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
    const auto answers = [this] {
        return LinuxProcessLauncher().run(QStringLiteral("/usr/bin/env"), pactl(QStringLiteral("info"))).status == 0;
    };
    if (!waitFor(answers))
        fail(QStringLiteral("The sound server does not answer"));
    // "second" before "micfeed": of equals PulseAudio prefers the older as the default.
    for (const char* device : {"speaker", "second", "micfeed", "mic"})
        loadDevice(QString::fromUtf8(device));
    control(QStringLiteral("set-default-sink speaker"));
    control(QStringLiteral("set-default-source mic"));
    const auto isSettled = [this] {
        const QString info = control(QStringLiteral("info"));
        return info.contains(u"Default Sink: speaker\n") && info.contains(u"Default Source: mic\n");
    };
    if (!waitFor(isSettled))
        fail(QStringLiteral("The devices do not become the default: ") + control(QStringLiteral("info")));
}

void PrivateAudioServer::startPulseAudio() {
    QFile script(at("default.pa"));
    if (!script.open(QIODevice::WriteOnly))
        fail(script.errorString());
    script.write("load-module module-native-protocol-unix auth-anonymous=1 socket=" + at("run/pulse/native").toUtf8() +
                 "\n");
    script.close();
    serve(QStringLiteral("pulseaudio"),
          {QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1"), QStringLiteral("--use-pid-file=no"),
           QStringLiteral("--realtime=no"), QStringLiteral("--high-priority=no"), QStringLiteral("-n"),
           QStringLiteral("-F"), script.fileName()});
}

void PrivateAudioServer::startPipeWire() {
    serve(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                          QStringLiteral("--address=unix:path=") + at("run/bus")});
    awaitFile(at("run/bus"));
    serve(QStringLiteral("pipewire"), {});
    awaitFile(at("run/pipewire-0"));
    serve(QStringLiteral("wireplumber"), {});
    // It takes PULSE_RUNTIME_PATH for the place of its socket.
    m_environment[QStringLiteral("PULSE_RUNTIME_PATH")] = at("run/pulse");
    serve(QStringLiteral("pipewire-pulse"), {});
}

// setpriv ends the program with the test, however that ends.
std::shared_ptr<LaunchedProcess> PrivateAudioServer::launch(const QString& program, const QStringList& arguments) {
    const QString log = at("log");
    QFile(log).open(QIODevice::Append);
    return LinuxProcessLauncher().launch(
        {.executable = QStringLiteral("/usr/bin/setpriv"),
         .arguments = QStringList{QStringLiteral("--pdeathsig"), QStringLiteral("KILL"), program} + arguments,
         .environment = m_environment,
         .standardOutput = QStringLiteral("/dev/null"),
         .standardError = log},
        {});
}

void PrivateAudioServer::serve(const QString& program, const QStringList& arguments) {
    m_processes.push_back(launch(program, arguments));
}

void PrivateAudioServer::awaitFile(const QString& path) {
    if (!waitFor([&path] { return QFile::exists(path); }))
        fail(QStringLiteral("Missing: ") + path);
}

void PrivateAudioServer::kill() {
    signalAll(SIGKILL);
    for (const auto& process : m_processes)
        static_cast<void>(waitFor([&process] { return !process->isRunning(); }));
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
    return QStringList{QStringLiteral("HOME=") + at("home"), QStringLiteral("pactl")} + words.split(QLatin1Char(' '));
}

QString PrivateAudioServer::control(const QString& words) {
    const CommandResult result = LinuxProcessLauncher().run(QStringLiteral("/usr/bin/env"), pactl(words));
    if (result.status != 0)
        fail(words + QStringLiteral(": ") + result.output);
    return result.output;
}

void PrivateAudioServer::loadDevice(const QString& name) {
    m_modules.push_back({name, control(QStringLiteral("load-module ") + moduleOf(name)).trimmed()});
    // PipeWire makes the device after it has answered.
    const auto isThere = [this, pattern = QLatin1Char('\t') + name + QLatin1Char('\t')] {
        return (control(QStringLiteral("list short sinks")) + control(QStringLiteral("list short sources")))
            .contains(pattern);
    };
    if (!waitFor(isThere))
        fail(QStringLiteral("The device does not appear: ") + name);
}

void PrivateAudioServer::unloadDevice(const QString& name) {
    const auto module = std::ranges::find(m_modules, name, &Module::name);
    if (module == m_modules.end())
        fail(QStringLiteral("Not loaded: ") + name);
    control(QStringLiteral("unload-module ") + module->id);
    m_modules.erase(module);
}

std::shared_ptr<LaunchedProcess> PrivateAudioServer::play(const QString& sink, const QString& path) {
    return launch(QStringLiteral("paplay"), {QStringLiteral("--device=") + sink, path});
}

} // namespace corvane
