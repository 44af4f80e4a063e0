#include "CorvaneCore/Services/StartRequest.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>

#include <array>
#include <utility>

namespace corvane {

namespace {

// As a request says them.
const std::array<std::pair<StartRequest::Window, QString>, 3> windowWords{
    {{StartRequest::Window::whenNeeded, QStringLiteral("whenNeeded")},
     {StartRequest::Window::show, QStringLiteral("show")},
     {StartRequest::Window::never, QStringLiteral("never")}}};

StartCommand refusal(const QString& words) {
    return {.kind = StartCommand::Kind::refuse, .request = {}, .words = words};
}

StartRequest::Window windowOf(const QString& word) {
    for (const auto& [window, name] : windowWords) {
        if (name == word)
            return window;
    }
    throw JsonError(QStringLiteral("no such word"));
}

QString wordOf(StartRequest::Window window) {
    for (const auto& [candidate, name] : windowWords) {
        if (candidate == window)
            return name;
    }
    return {};
}

// False if it is no option.
bool takeOption(const QString& option, StartCommand& command) {
    if (option == QLatin1String("-h") || option == QLatin1String("--help"))
        command.kind = StartCommand::Kind::help;
    else if (option == QLatin1String("-v") || option == QLatin1String("--version"))
        command.kind = StartCommand::Kind::version;
    else if (option == QLatin1String("--show"))
        command.request.window = StartRequest::Window::show;
    else if (option == QLatin1String("--background"))
        command.request.window = StartRequest::Window::never;
    else
        return false;
    return true;
}

// What a file is called, or nothing for an address of something else.
std::optional<QString> pathOf(const QString& argument, const QString& currentDirectory) {
    static const QRegularExpression address(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*://"));
    if (!argument.contains(address))
        return QDir::cleanPath(QDir(currentDirectory).absoluteFilePath(argument));
    const QUrl url(argument);
    return url.isLocalFile() ? std::optional(QDir::cleanPath(url.toLocalFile())) : std::nullopt;
}

} // namespace

StartCommand parseStartCommand(const QStringList& arguments, const QString& currentDirectory) {
    StartCommand command;
    // The bare word begins a debug command that was not finished.
    if (arguments == QStringList{QStringLiteral("debug")})
        return command;
    bool optionsAreOver = false;
    for (const QString& argument : arguments) {
        if (!optionsAreOver && argument == QLatin1String("--")) {
            optionsAreOver = true;
        } else if (!optionsAreOver && argument.startsWith(QLatin1Char('-')) && argument.size() > 1) {
            if (!takeOption(argument, command))
                return refusal(QStringLiteral("unknown option %1; see corvane --help").arg(argument));
        } else if (argument.isEmpty()) {
            return refusal(QStringLiteral("the name of a file is empty"));
        } else if (const auto path = pathOf(argument, currentDirectory)) {
            command.request.files.append(*path);
        } else {
            return refusal(QStringLiteral("%1 is not a file on this machine").arg(argument));
        }
        if (command.kind != StartCommand::Kind::start)
            return command;
    }
    return command;
}

std::optional<QString> fileFault(const QStringList& files) {
    for (const QString& file : files) {
        const QFileInfo info(file);
        if (!info.exists())
            return QStringLiteral("there is no file %1").arg(file);
        if (!info.isFile())
            return QStringLiteral("%1 is not a file").arg(file);
        if (!info.isReadable())
            return QStringLiteral("%1 cannot be read").arg(file);
    }
    return std::nullopt;
}

QString startHelp() {
    return QStringLiteral(R"(Usage: corvane [OPTION] [FILE...]

Records meetings and turns them, on this machine, into transcripts with named speakers. It lives in the tray of the
desktop; its menu starts and stops a recording and opens the window. Each FILE, audio or video, is imported as a
meeting of its own.

A second start hands over to the process that runs already, which then shows its window.

Options:
  --show         open the window
  --background   open no window; for a start with the desktop
  -h, --help     show this and end
  -v, --version  show the version and end

To end Corvane, press Ctrl+Q in its window. corvane debug status tells where its files lie; corvanectl does everything
from the command line.
)");
}

QByteArray encoded(const StartRequest& request) {
    return compactJson(QJsonObject{{QStringLiteral("window"), wordOf(request.window)},
                                   {QStringLiteral("files"), QJsonArray::fromStringList(request.files)},
                                   {QStringLiteral("activationToken"), request.activationToken},
                                   {QStringLiteral("startupID"), request.startupID}}) +
           '\n';
}

std::optional<StartRequest> decodedStartRequest(const QByteArray& line) {
    try {
        const JsonDocument document(line);
        const JsonObject object = document.root().object();
        StartRequest request;
        request.window = windowOf(object.required("window").string());
        for (const JsonView& file : object.required("files").array())
            request.files.append(file.string());
        request.activationToken = object.required("activationToken").string();
        request.startupID = object.required("startupID").string();
        return request;
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

} // namespace corvane
