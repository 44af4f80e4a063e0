// What works on a machine and what is missing: one value for each thing that Corvane uses, made by pure functions of
// facts. Every surface shows the same. Any thread.
#pragma once

#include "CorvaneCore/Interfaces/AudioInput.h"
#include "CorvaneCore/Interfaces/MachineProbe.h"
#include "CorvaneCore/Services/Ollama.h"

#include <QString>

#include <optional>
#include <vector>

namespace corvane {

struct DoctorCheck {
    enum class State { ok, missing, problem };
    // Without what is needed Corvane does not do its work; the rest is for conveniences.
    enum class Need { needed, optional };

    QString id; // for scripts
    QString title;
    Need need = Need::optional;
    QString purpose; // what it is needed for
    State state = State::problem;
    QString detail; // what was found
    QString remedy; // how to get it; empty when ok

    friend bool operator==(const DoctorCheck&, const DoctorCheck&) = default;
};

using DoctorChecks = std::vector<DoctorCheck>;

// What is not asked through MachineProbe. As there, the start value stands for no answer.
struct WorkerFacts {
    enum class Start { noAnswer, works, fails };

    std::optional<QString> path; // nothing: not found
    Start start = Start::noAnswer;
    QString output; // of `--version`, or why it could not be started
};

struct SpeechModelFacts {
    QString directory;
    Presence files = Presence::noAnswer;
    bool isUsed = true; // another worker brings a model of its own
};

struct SoundFacts {
    std::optional<AudioDevices> devices;
    QString error; // why there are none; empty: no answer
};

struct ProgramFacts {
    QString name;
    Presence presence = Presence::noAnswer;
    QString path;
};

[[nodiscard]] DoctorChecks checksOf(const WorkerFacts& facts);
[[nodiscard]] DoctorChecks checksOf(const SpeechModelFacts& facts);
[[nodiscard]] DoctorChecks checksOf(const SoundFacts& facts); // the microphone, and what is played
[[nodiscard]] DoctorChecks checksOf(const StorageFacts& facts);
[[nodiscard]] DoctorChecks checksOf(const KeyringFacts& facts);
[[nodiscard]] DoctorChecks checksOf(const SessionBusFacts& facts); // the tray, notifications, accessibility
[[nodiscard]] DoctorChecks checksOf(const WindowFacts& facts);
[[nodiscard]] DoctorChecks checksOf(const OllamaStatus& status);
[[nodiscard]] DoctorChecks checksOf(const ProgramFacts& facts);
// The address at which the build looks for updates, as UpdateSettings gives it.
[[nodiscard]] DoctorCheck updateCheckOf(const QString& manifestURL);

// Whether nothing is amiss with what is needed.
[[nodiscard]] bool isReady(const DoctorChecks& checks);

} // namespace corvane
