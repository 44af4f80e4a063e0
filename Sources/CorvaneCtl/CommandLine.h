// The command line as a table: what the commands and their options are, what a user typed, and the help made of both.
// Pure; nothing here knows what a command does.
#pragma once

#include <QString>
#include <QStringList>

#include <map>
#include <optional>
#include <vector>

namespace corvane::ctl {

struct OptionSpec {
    QString name;      // without its two hyphens
    QString valueName; // empty: the option takes no value
    QString help;
};

struct CommandForm {
    QString name;
    QString operands; // as the help shows them
    int minimumOperands = 0;
    std::optional<int> maximumOperands;
    QString summary;     // one line
    QString description; // for the command's own help
    std::vector<OptionSpec> options;
};

// What was typed. A command may be missing where --help or --version asks for no more.
struct CommandLine {
    QString command;
    std::map<QString, QString> options; // the last value of each; an option without a value holds ""
    QStringList operands;

    [[nodiscard]] bool has(const QString& option) const { return options.contains(option); }
    [[nodiscard]] std::optional<QString> value(const QString& option) const;
    [[nodiscard]] std::optional<QString> operand(int index) const;
};

// The options that every command has, and that may stand before it.
[[nodiscard]] const std::vector<OptionSpec>& commonOptions();

[[nodiscard]] const CommandForm* findCommand(const std::vector<CommandForm>& commands, const QString& name);

// `arguments` without the program's name. Options may stand among the operands; "--" ends them. Throws UsageError.
[[nodiscard]] CommandLine parseCommandLine(const QStringList& arguments, const std::vector<CommandForm>& commands);

[[nodiscard]] QString generalHelp(const std::vector<CommandForm>& commands);
[[nodiscard]] QString commandHelp(const CommandForm& command);

} // namespace corvane::ctl
