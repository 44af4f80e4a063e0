// Facts about the machine and the desktop that a user may want put right. Every fact has a value for "no answer", which
// is also what it starts as. Each call blocks for a few seconds at most, changes nothing and starts no service that was
// not running; any thread, several at a time.
#pragma once

#include <QString>

#include <optional>

namespace corvane {

enum class Presence { noAnswer, absent, present };

struct KeyringFacts {
    enum class State { noAnswer, absent, locked, reachable, failed };

    State state = State::noAnswer;
    QString text; // unless reachable: why, for the user
};

struct SessionBusFacts {
    Presence bus = Presence::noAnswer;
    Presence trayHost = Presence::noAnswer;      // something that shows icons of the kind we have
    Presence notifications = Presence::noAnswer; // also if it would be started on demand
    Presence accessibility = Presence::noAnswer; // absent: switched off
};

struct DisplayFacts {
    QString name; // empty where the session has none of that kind
    Presence server = Presence::noAnswer;
};

// From where it is known which window is in front. `nobody`: the desktop does not tell.
enum class FrontWindowTeller { noAnswer, nobody, x11, sway, accessibility };

struct WindowFacts {
    DisplayFacts x11;
    DisplayFacts wayland;
    FrontWindowTeller frontWindow = FrontWindowTeller::noAnswer;
    QString desktop; // its own name, may be empty
};

struct StorageFacts {
    QString directory;            // the one asked for, or the nearest above it that exists
    std::optional<QString> error; // why nothing can be written there
    qint64 freeBytes = -1;        // negative: no answer
};

class MachineProbe {
public:
    virtual ~MachineProbe() = default;

    [[nodiscard]] virtual KeyringFacts keyring() = 0;
    [[nodiscard]] virtual SessionBusFacts sessionBus() = 0;
    [[nodiscard]] virtual WindowFacts windows() = 0;
    [[nodiscard]] virtual StorageFacts storage(const QString& directory) = 0;
    // Where a program is that can be started by its name; nothing if there is none.
    [[nodiscard]] virtual std::optional<QString> program(const QString& name) = 0;
};

} // namespace corvane
