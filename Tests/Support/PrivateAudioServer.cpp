#include "Support/PrivateAudioServer.h"

#include "Support/Waiting.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <signal.h>
#include <sys/prctl.h>

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
    if (device == u"mic")
        return QStringLiteral("module-remap-source master=micfeed.monitor source_name=mic");
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

PrivateAudioServer::PrivateAudioServer(Kind kind)
    : m_kind(kind), m_environment(QProcessEnvironment::systemEnvironment()) {
    for (const char* name : {"run", "state", "home"}) {
        QDir().mkpath(at(name));
        QFile::setPermissions(at(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    for (const char* name : {"XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH", "PIPEWIRE_RUNTIME_DIR"})
        m_environment.insert(QString::fromUtf8(name), at("run"));
    for (const char* name : {"PULSE_STATE_PATH", "XDG_STATE_HOME"})
        m_environment.insert(QString::fromUtf8(name), at("state"));
    for (const char* name : {"HOME", "XDG_CONFIG_HOME"})
        m_environment.insert(QString::fromUtf8(name), at("home"));
    m_environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=") + at("run/bus"));
    m_environment.insert(QStringLiteral("PULSE_SERVER"), address());
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
    launch(QStringLiteral("pulseaudio"),
           {QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1"),
            QStringLiteral("--use-pid-file=no"), QStringLiteral("--realtime=no"), QStringLiteral("--high-priority=no"),
            QStringLiteral("-n"), QStringLiteral("-F"), script.fileName()});
    awaitFile(at("run/pulse/native"));
}

void PrivateAudioServer::startPipeWire() {
    launch(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                           QStringLiteral("--address=unix:path=") + at("run/bus")});
    awaitFile(at("run/bus"));
    launch(QStringLiteral("pipewire"), {});
    awaitFile(at("run/pipewire-0"));
    launch(QStringLiteral("wireplumber"), {});
    // It takes PULSE_RUNTIME_PATH for the place of its socket.
    m_environment.insert(QStringLiteral("PULSE_RUNTIME_PATH"), at("run/pulse"));
    launch(QStringLiteral("pipewire-pulse"), {});
    awaitFile(at("run/pulse/native"));
}

void PrivateAudioServer::launch(const QString& program, const QStringList& arguments) {
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(m_environment);
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(at("log"), QIODevice::Append);
    process->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process->start(program, arguments);
    if (!process->waitForStarted())
        fail(program + QStringLiteral(": ") + process->errorString());
    m_processes.push_back(std::move(process));
}

void PrivateAudioServer::awaitFile(const QString& path) {
    if (!waitFor([&path] { return QFile::exists(path); }))
        fail(QStringLiteral("Missing: ") + path);
}

void PrivateAudioServer::kill() {
    for (const auto& process : m_processes) {
        process->kill();
        process->waitForFinished();
    }
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
        ::kill(static_cast<pid_t>(process->processId()), signal);
}

QString PrivateAudioServer::control(const QString& words) {
    QProcess pactl;
    pactl.setProcessEnvironment(m_environment);
    pactl.start(QStringLiteral("pactl"), words.split(QLatin1Char(' ')));
    if (!pactl.waitForFinished() || pactl.exitCode() != 0)
        fail(words + QStringLiteral(": ") + QString::fromUtf8(pactl.readAllStandardError()));
    return QString::fromUtf8(pactl.readAllStandardOutput());
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

std::unique_ptr<QProcess> PrivateAudioServer::play(const QString& sink, const QString& path) {
    auto player = std::make_unique<QProcess>();
    player->setProcessEnvironment(m_environment);
    player->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    player->start(QStringLiteral("paplay"), {QStringLiteral("--device=") + sink, path});
    if (!player->waitForStarted())
        fail(player->errorString());
    return player;
}

} // namespace corvane
