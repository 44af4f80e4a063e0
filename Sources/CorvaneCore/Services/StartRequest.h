// What a start of the application asks for: read from its command line, and handed over to the process that runs
// already. Values, any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace corvane {

struct StartRequest {
    // Whether the window opens. `whenNeeded`: where setup is unfinished or the desktop has no tray, and for a process
    // that runs already, since it was started again to be seen.
    enum class Window { whenNeeded, show, never };

    Window window = Window::whenNeeded;
    QStringList files; // to be imported; absolute
    // What the desktop gave the started process so that its window may come to the front, on Wayland and on X11.
    QString activationToken;
    QString startupID;

    friend bool operator==(const StartRequest&, const StartRequest&) = default;
};

struct StartCommand {
    enum class Kind { start, help, version, refuse };

    Kind kind = Kind::start;
    StartRequest request;
    QString words; // why it is refused
};

// `arguments` without the program's name. Relative files are of `currentDirectory`.
[[nodiscard]] StartCommand parseStartCommand(const QStringList& arguments, const QString& currentDirectory);

// Why one of the files cannot be imported, in a sentence; nothing if all are readable files.
[[nodiscard]] std::optional<QString> fileFault(const QStringList& files);

[[nodiscard]] QString startHelp();

// One line, with its line feed.
[[nodiscard]] QByteArray encoded(const StartRequest& request);
// Nothing for what is no request.
[[nodiscard]] std::optional<StartRequest> decodedStartRequest(const QByteArray& line);

} // namespace corvane
