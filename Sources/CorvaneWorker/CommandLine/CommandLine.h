// What the command line asks for. Values; any thread.
#pragma once

#include "CorvaneContract/Error.h"

#include <QString>
#include <QStringList>

#include <variant>

namespace corvane {

// text() is one sentence for standard error; the exit status is 2.
class UsageError : public Error {
public:
    using Error::Error;
};

enum class SpeakerSeparation { Off, On };

// How many speakers there may be. A known number has both limits equal.
struct SpeakerLimits {
    int least = 1;
    int most = 10;

    friend bool operator==(const SpeakerLimits&, const SpeakerLimits&) = default;
};

struct ProcessCommand {
    QString audio;
    QString outDirectory;
    QString device;  // any value is taken: the worker uses what it has
    QString backend; // likewise
    QString language;
    SpeakerSeparation separation = SpeakerSeparation::On;
    SpeakerLimits speakers;

    friend bool operator==(const ProcessCommand&, const ProcessCommand&) = default;
};

struct ExtractCommand {
    QString runDirectory;
    QString speaker;
    QString output;

    friend bool operator==(const ExtractCommand&, const ExtractCommand&) = default;
};

struct ContextCommand {
    QString runDirectory;
    QString context;

    friend bool operator==(const ContextCommand&, const ContextCommand&) = default;
};

struct ModelsCommand {
    friend bool operator==(const ModelsCommand&, const ModelsCommand&) = default;
};

struct HelpCommand {
    friend bool operator==(const HelpCommand&, const HelpCommand&) = default;
};

struct VersionCommand {
    friend bool operator==(const VersionCommand&, const VersionCommand&) = default;
};

using Command =
    std::variant<ProcessCommand, ExtractCommand, ContextCommand, ModelsCommand, HelpCommand, VersionCommand>;

// `arguments` without the program's own name. What stands behind an option is its value, whatever it looks like. A
// count below 1 is taken as 1, and a maximum below the minimum as the minimum: the application passes on what its
// settings hold. Throws UsageError.
[[nodiscard]] Command parseCommandLine(const QStringList& arguments);

[[nodiscard]] QString usageText();

} // namespace corvane
