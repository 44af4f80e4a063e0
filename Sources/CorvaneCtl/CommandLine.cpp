#include "CorvaneCtl/CommandLine.h"

#include "CorvaneCtl/CtlError.h"

#include <algorithm>

namespace corvane::ctl {

namespace {

const OptionSpec* findOption(const std::vector<OptionSpec>& options, const QString& name) {
    const auto found =
        std::find_if(options.begin(), options.end(), [&](const OptionSpec& option) { return option.name == name; });
    return found == options.end() ? nullptr : &*found;
}

class Parser {
public:
    Parser(const QStringList& arguments, const std::vector<CommandForm>& commands)
        : m_arguments(arguments), m_commands(commands) {}

    CommandLine parse() {
        bool optionsEnded = false;
        while (m_next < m_arguments.size()) {
            const QString argument = m_arguments[m_next++];
            if (optionsEnded || argument == QLatin1String("-") || !argument.startsWith(QLatin1Char('-')))
                takeWord(argument);
            else if (argument == QLatin1String("--"))
                optionsEnded = true;
            else
                takeOption(argument);
        }
        check();
        return m_line;
    }

private:
    void takeWord(const QString& word) {
        if (m_command) {
            m_line.operands.append(word);
            return;
        }
        m_command = findCommand(m_commands, word);
        if (!m_command)
            throw UsageError(QStringLiteral("there is no command “%1”; see corvanectl --help").arg(word));
        m_line.command = word;
    }

    void takeOption(const QString& argument) {
        if (argument == QLatin1String("-h")) {
            m_line.options.insert_or_assign(QStringLiteral("help"), QString());
            return;
        }
        const qsizetype equals = argument.indexOf(QLatin1Char('='));
        const QString name = argument.mid(2, equals < 0 ? -1 : equals - 2);
        const OptionSpec* option =
            argument.startsWith(QLatin1String("--")) ? findOption(commonOptions(), name) : nullptr;
        if (!option && m_command && argument.startsWith(QLatin1String("--")))
            option = findOption(m_command->options, name);
        if (!option)
            throw UsageError(
                QStringLiteral("there is no option “%1”%2").arg(equals < 0 ? argument : argument.left(equals), hint()));
        m_line.options.insert_or_assign(option->name, valueOf(*option, argument, equals));
    }

    QString valueOf(const OptionSpec& option, const QString& argument, qsizetype equals) {
        if (option.valueName.isEmpty()) {
            if (equals >= 0)
                throw UsageError(QStringLiteral("the option --%1 takes no value").arg(option.name));
            return {};
        }
        if (equals >= 0)
            return argument.mid(equals + 1);
        if (m_next == m_arguments.size())
            throw UsageError(QStringLiteral("the option --%1 needs a value: %2").arg(option.name, option.valueName));
        return m_arguments[m_next++];
    }

    void check() const {
        if (m_line.has(QStringLiteral("help")) || m_line.has(QStringLiteral("version")))
            return;
        if (!m_command)
            throw UsageError(QStringLiteral("a command is missing; see corvanectl --help"));
        const auto count = m_line.operands.size();
        if (count < m_command->minimumOperands)
            throw UsageError(QStringLiteral("%1 needs %2%3").arg(m_command->name, m_command->operands, hint()));
        if (m_command->maximumOperands && count > *m_command->maximumOperands)
            throw UsageError(QStringLiteral("%1 does not take “%2”%3")
                                 .arg(m_command->name, m_line.operands[*m_command->maximumOperands], hint()));
    }

    [[nodiscard]] QString hint() const {
        return m_command ? QStringLiteral("; see corvanectl %1 --help").arg(m_command->name)
                         : QStringLiteral("; see corvanectl --help");
    }

    const QStringList& m_arguments;
    const std::vector<CommandForm>& m_commands;
    qsizetype m_next = 0;
    const CommandForm* m_command = nullptr;
    CommandLine m_line;
};

QString twoColumns(const std::vector<std::pair<QString, QString>>& rows) {
    qsizetype width = 0;
    for (const auto& [left, right] : rows)
        width = std::max(width, left.size());
    QString text;
    for (const auto& [left, right] : rows)
        text += QStringLiteral("  ") + left.leftJustified(width + 2) + right + QLatin1Char('\n');
    return text;
}

QString optionTable(const std::vector<OptionSpec>& options) {
    std::vector<std::pair<QString, QString>> rows;
    for (const OptionSpec& option : options) {
        const QString value = option.valueName.isEmpty() ? QString() : QLatin1Char(' ') + option.valueName;
        rows.emplace_back(QStringLiteral("--") + option.name + value, option.help);
    }
    return twoColumns(rows);
}

} // namespace

std::optional<QString> CommandLine::value(const QString& option) const {
    const auto found = options.find(option);
    return found == options.end() ? std::nullopt : std::optional(found->second);
}

std::optional<QString> CommandLine::operand(int index) const {
    return index < operands.size() ? std::optional(operands[index]) : std::nullopt;
}

const std::vector<OptionSpec>& commonOptions() {
    static const std::vector<OptionSpec> options{
        {QStringLiteral("json"), {}, QStringLiteral("print the result as JSON")},
        {QStringLiteral("data-dir"), QStringLiteral("DIR"), QStringLiteral("use another data directory")},
        {QStringLiteral("help"), {}, QStringLiteral("show this help")},
        {QStringLiteral("version"), {}, QStringLiteral("show the version")},
    };
    return options;
}

const CommandForm* findCommand(const std::vector<CommandForm>& commands, const QString& name) {
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const CommandForm& command) { return command.name == name; });
    return found == commands.end() ? nullptr : &*found;
}

CommandLine parseCommandLine(const QStringList& arguments, const std::vector<CommandForm>& commands) {
    return Parser(arguments, commands).parse();
}

QString generalHelp(const std::vector<CommandForm>& commands) {
    std::vector<std::pair<QString, QString>> rows;
    for (const CommandForm& command : commands) {
        const QString operands = command.operands.isEmpty() ? QString() : QLatin1Char(' ') + command.operands;
        rows.emplace_back(command.name + operands, command.summary);
    }
    return QStringLiteral("Usage: corvanectl [OPTION...] COMMAND [ARGUMENT...]\n\n"
                          "Turns recordings of meetings into transcripts with named speakers, on this machine.\n\n"
                          "Commands:\n%1\nOptions:\n%2\n"
                          "MEETING is an id, the beginning of one, a title, or “latest”. `corvanectl COMMAND --help`\n"
                          "tells more of a command, corvanectl(1) all.\n")
        .arg(twoColumns(rows), optionTable(commonOptions()));
}

QString commandHelp(const CommandForm& command) {
    const QString operands = command.operands.isEmpty() ? QString() : QLatin1Char(' ') + command.operands;
    std::vector<OptionSpec> options = command.options;
    options.insert(options.end(), commonOptions().begin(), commonOptions().end());
    return QStringLiteral("Usage: corvanectl %1 [OPTION...]%2\n\n%3\n\nOptions:\n%4")
        .arg(command.name, operands, command.description, optionTable(options));
}

} // namespace corvane::ctl
