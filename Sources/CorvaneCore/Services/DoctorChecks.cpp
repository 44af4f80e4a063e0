#include "CorvaneCore/Services/DoctorCheck.h"
#include "CorvaneCore/Settings/UpdateSettings.h"

#include <QLocale>

#include <algorithm>

namespace corvane {

namespace {

using Need = DoctorCheck::Need;
using State = DoctorCheck::State;

constexpr qint64 littleSpace = 2LL * 1024 * 1024 * 1024; // bytes, about an hour of a recording in two tracks

const QString noAnswer = QStringLiteral("does not answer");
const QString noBus = QStringLiteral("there is no session bus");
const QString fromDesktop = QStringLiteral("start Corvane from a desktop session");

DoctorCheck blank(const char* id, const char* title, Need need, const char* purpose) {
    DoctorCheck check;
    check.id = QLatin1String(id);
    check.title = QLatin1String(title);
    check.need = need;
    check.purpose = QLatin1String(purpose);
    return check;
}

DoctorCheck found(DoctorCheck check, const QString& detail) {
    check.state = State::ok;
    check.detail = detail;
    return check;
}

DoctorCheck amiss(DoctorCheck check, State state, const QString& detail, const QString& remedy) {
    check.state = state;
    check.detail = detail;
    check.remedy = remedy;
    return check;
}

// Something that is there, is not, or does not say.
DoctorCheck checkOf(const DoctorCheck& check, Presence presence, const QString& present, const QString& absent,
                    const QString& remedy) {
    switch (presence) {
    case Presence::present:
        return found(check, present);
    case Presence::absent:
        return amiss(check, State::missing, absent, remedy);
    case Presence::noAnswer:
        break;
    }
    return amiss(check, State::problem, noAnswer, remedy);
}

DoctorCheck soundCheck(const DoctorCheck& check, const SoundFacts& facts, const std::vector<AudioDevice>& devices,
                       const QString& none, const QString& remedy) {
    if (!facts.devices && facts.error.isEmpty())
        return amiss(check, State::problem, QStringLiteral("the sound server does not answer"),
                     QStringLiteral("systemctl --user restart pipewire-pulse, or log out and in"));
    if (!facts.devices)
        return amiss(check, State::missing, facts.error,
                     QStringLiteral("sudo apt install pipewire-pulse wireplumber, then log out and in"));
    if (devices.empty())
        return amiss(check, State::missing, none, remedy);
    const auto preferred =
        std::find_if(devices.begin(), devices.end(), [](const AudioDevice& device) { return device.isDefault; });
    const AudioDevice& shown = preferred == devices.end() ? devices.front() : *preferred;
    return found(check, QStringLiteral("%1, through %2").arg(shown.name, facts.devices->server));
}

QString displayText(const DisplayFacts& display, const char* kind) {
    return QStringLiteral("%1 on %2").arg(QLatin1String(kind), display.name);
}

DoctorCheck displayCheck(const WindowFacts& facts) {
    const DoctorCheck check = blank("windows", "Windows", Need::optional, "shows Corvane's window");
    QStringList works;
    QStringList silent;
    if (!facts.x11.name.isEmpty())
        (facts.x11.server == Presence::present ? works : silent) << displayText(facts.x11, "X11");
    if (!facts.wayland.name.isEmpty())
        (facts.wayland.server == Presence::present ? works : silent) << displayText(facts.wayland, "Wayland");
    if (!works.isEmpty()) {
        const QString desktop = facts.desktop.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(facts.desktop);
        return found(check, works.join(QStringLiteral(", ")) + desktop);
    }
    if (!silent.isEmpty())
        return amiss(check, State::problem, silent.join(QStringLiteral(", ")) + QStringLiteral(" cannot be reached"),
                     fromDesktop);
    return amiss(check, State::missing, QStringLiteral("neither DISPLAY nor WAYLAND_DISPLAY names a display"),
                 fromDesktop);
}

DoctorCheck frontWindowCheck(const WindowFacts& facts) {
    const DoctorCheck check = blank("front-window", "Front window", Need::optional,
                                    "tells which program is in front, so that a call is noticed");
    switch (facts.frontWindow) {
    case FrontWindowTeller::x11:
        return found(check, QStringLiteral("told by X11"));
    case FrontWindowTeller::sway:
        return found(check, QStringLiteral("told by sway"));
    case FrontWindowTeller::accessibility:
        return found(check, QStringLiteral("told by accessible programs, of themselves"));
    case FrontWindowTeller::nobody:
        return amiss(check, State::missing, QStringLiteral("nothing on the desktop tells"),
                     facts.wayland.name.isEmpty()
                         ? fromDesktop
                         : QStringLiteral("have accessibility on, as above, or choose a session of X11 at the login"));
    case FrontWindowTeller::noAnswer:
        break;
    }
    return amiss(check, State::problem, noAnswer, fromDesktop);
}

} // namespace

DoctorChecks checksOf(const WorkerFacts& facts) {
    const DoctorCheck check =
        blank("worker", "Worker", Need::needed, "turns recordings into transcripts with named speakers");
    const auto remedy = QStringLiteral("reinstall Corvane, or name a worker program in CORVANE_WORKER_PATH");
    if (!facts.path)
        return {amiss(check, State::missing, QStringLiteral("corvane-worker not found"), remedy)};
    switch (facts.start) {
    case WorkerFacts::Start::works:
        return {found(check, facts.output.isEmpty() ? *facts.path : facts.output + QStringLiteral(", ") + *facts.path)};
    case WorkerFacts::Start::fails:
        return {amiss(check, State::problem, QStringLiteral("%1 cannot be used: %2").arg(*facts.path, facts.output),
                      remedy)};
    case WorkerFacts::Start::noAnswer:
        break;
    }
    return {amiss(check, State::problem, QStringLiteral("%1 does not answer").arg(*facts.path), remedy)};
}

DoctorChecks checksOf(const SpeechModelFacts& facts) {
    const DoctorCheck check =
        blank("speech-model", "Speech model", Need::needed, "lets the worker recognise English speech");
    if (!facts.isUsed)
        return {found(check, QStringLiteral("the business of the worker in CORVANE_WORKER_PATH"))};
    return {checkOf(check, facts.files, facts.directory, QStringLiteral("nothing in %1").arg(facts.directory),
                    QStringLiteral("sudo apt install --reinstall pocketsphinx-en-us"))};
}

DoctorChecks checksOf(const SoundFacts& facts) {
    const AudioDevices devices = facts.devices.value_or(AudioDevices());
    return {soundCheck(blank("microphone", "Microphone", Need::needed, "records what you say"), facts,
                       devices.microphones, QStringLiteral("there is no microphone"),
                       QStringLiteral("connect one; corvanectl devices lists what the sound server has")),
            soundCheck(blank("sound-output", "Sound output", Need::needed, "records what the others say"), facts,
                       devices.outputs, QStringLiteral("there is no output"),
                       QStringLiteral("connect loudspeakers or headphones; corvanectl devices lists what the sound "
                                      "server has"))};
}

DoctorChecks checksOf(const StorageFacts& facts) {
    const DoctorCheck check =
        blank("data-directory", "Data directory", Need::needed, "keeps recordings and transcripts");
    if (facts.error)
        return {amiss(check, State::problem, QStringLiteral("%1: %2").arg(facts.directory, *facts.error),
                      QStringLiteral("make it writable (chmod u+rwx), or set XDG_DATA_HOME to another place"))};
    if (facts.freeBytes < 0)
        return {amiss(check, State::problem, noAnswer, QStringLiteral("look at the disk that it lies on"))};
    const QString text =
        QStringLiteral("%1, %2 free").arg(facts.directory, QLocale::c().formattedDataSize(facts.freeBytes, 1));
    if (facts.freeBytes < littleSpace)
        return {
            amiss(check, State::problem, text, QStringLiteral("make room: an hour of a recording takes up to 2 GiB"))};
    return {found(check, text)};
}

DoctorChecks checksOf(const KeyringFacts& facts) {
    const DoctorCheck check =
        blank("keyring", "Keyring", Need::optional, "keeps the tokens for Hugging Face and Notion");
    const auto unlock = QStringLiteral("unlock it, with Passwords and Keys (package seahorse) or by logging in anew");
    switch (facts.state) {
    case KeyringFacts::State::reachable:
        return {found(check, QStringLiteral("reachable"))};
    case KeyringFacts::State::absent:
        return {
            amiss(check, State::missing, facts.text,
                  QStringLiteral("start Corvane from a desktop session; where that has no keyring, sudo apt install "
                                 "gnome-keyring, then log out and in"))};
    case KeyringFacts::State::locked:
        return {amiss(check, State::problem, facts.text, unlock)};
    case KeyringFacts::State::failed:
        return {amiss(check, State::problem, facts.text, QStringLiteral("log out and in"))};
    case KeyringFacts::State::noAnswer:
        break;
    }
    return {amiss(check, State::problem, noAnswer, QStringLiteral("log out and in"))};
}

DoctorChecks checksOf(const SessionBusFacts& facts) {
    const bool hasBus = facts.bus != Presence::absent;
    const auto orNoBus = [hasBus](const char* text) { return hasBus ? QString::fromUtf8(text) : noBus; };
    const auto orDesktop = [hasBus](const char* text) { return hasBus ? QString::fromUtf8(text) : fromDesktop; };
    return {
        checkOf(blank("tray", "Tray", Need::optional, "shows Corvane's icon and its menu"), facts.trayHost,
                QStringLiteral("takes icons"), orNoBus("nothing on the desktop shows icons"),
                orDesktop("on GNOME: sudo apt install gnome-shell-extension-appindicator and switch it on; elsewhere "
                          "add the notification area to the panel")),
        checkOf(blank("notifications", "Notifications", Need::optional, "offer to record a call that has begun"),
                facts.notifications, QStringLiteral("shown"), orNoBus("nothing on the desktop shows them"),
                orDesktop("sudo apt install dunst, or another notification daemon")),
        checkOf(blank("accessibility", "Accessibility", Need::optional,
                      "tells which page a browser shows, so that a call in it is noticed"),
                facts.accessibility, QStringLiteral("switched on"), orNoBus("switched off"),
                orDesktop("gsettings set org.gnome.desktop.interface toolkit-accessibility true, then restart the "
                          "browser; programs then tell others what they show, and a browser on a busy page takes "
                          "about twice the processor time (package at-spi2-core)"))};
}

DoctorChecks checksOf(const WindowFacts& facts) {
    return {displayCheck(facts), frontWindowCheck(facts)};
}

DoctorChecks checksOf(const OllamaStatus& status) {
    const DoctorCheck check =
        blank("ollama", "Ollama", Need::optional, "gives a worker that uses it richer summaries and speaker hints");
    switch (status.state) {
    case OllamaState::ready:
        return {found(check, QStringLiteral("running, with the model %1").arg(ollamaModelName))};
    case OllamaState::modelMissing:
        return {amiss(check, State::missing, QStringLiteral("running, without the model %1").arg(ollamaModelName),
                      QStringLiteral("ollama pull %1").arg(ollamaModelName))};
    case OllamaState::installed:
        return {amiss(check, State::problem, QStringLiteral("installed, but its service does not answer"),
                      QStringLiteral("ollama serve, or sudo systemctl start ollama"))};
    case OllamaState::missing:
        return {amiss(
            check, State::missing, QStringLiteral("not installed"),
            QStringLiteral("install it from https://ollama.com/download, then ollama pull %1").arg(ollamaModelName))};
    case OllamaState::unknown:
    case OllamaState::checking:
        break;
    }
    return {amiss(check, State::problem, noAnswer, QStringLiteral("sudo systemctl restart ollama"))};
}

DoctorChecks checksOf(const ProgramFacts& facts) {
    const QString remedy = facts.name == QLatin1String("uv")
                               ? QStringLiteral("sudo apt install pipx && pipx install uv")
                               : QStringLiteral("sudo apt install %1").arg(facts.name);
    DoctorCheck check = blank("", "", Need::optional,
                              "runs a worker of your own that is written in Python; the one that comes along does "
                              "without");
    check.id = check.title = facts.name;
    return {checkOf(check, facts.presence, facts.path, QStringLiteral("not installed"), remedy)};
}

DoctorCheck updateCheckOf(const QString& manifestURL) {
    const DoctorCheck check =
        blank("updates", "Updates", Need::optional, "tells when there is a newer release of Corvane");
    if (manifestURL.trimmed() != defaultUpdateManifestURL)
        return found(check, manifestURL.trimmed());
    return amiss(check, State::missing, QStringLiteral("this build was not told where to look"),
                 QStringLiteral("install Corvane from a package, or have info.json name an address"));
}

bool isReady(const DoctorChecks& checks) {
    return std::none_of(checks.begin(), checks.end(), [](const DoctorCheck& check) {
        return check.need == Need::needed && check.state != State::ok;
    });
}

} // namespace corvane
