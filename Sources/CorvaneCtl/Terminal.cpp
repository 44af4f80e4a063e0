#include "CorvaneCtl/Terminal.h"

#include "CorvaneCtl/CtlError.h"
#include "CorvaneCtl/Text.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>

namespace corvane::ctl {

namespace {

constexpr qint64 plainProgressMilliseconds = 5000;
constexpr int plainProgressWidth = 200;
const QByteArray eraseLine = QByteArrayLiteral("\r\033[K");

// Gives the errno of a failure, or 0.
int writeAll(int descriptor, const QByteArray& bytes) {
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t written = ::write(descriptor, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (written >= 0)
            done += written;
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

int terminalWidth() {
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col - 1; // a full line would wrap on some terminals
    return 79;
}

} // namespace

void prepareStandardStreams() {
    // Opened for the wrong direction, so that what is written there is still known to be lost.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0) [[maybe_unused]]
            const int opened = ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
    ::signal(SIGPIPE, SIG_IGN);
}

Terminal::Terminal() : m_outputTerminal(::isatty(STDOUT_FILENO) == 1) {
    const QByteArray kind = qgetenv("TERM");
    m_canRedraw = ::isatty(STDERR_FILENO) == 1 && !kind.isEmpty() && kind != "dumb";
}

bool Terminal::canAsk() const {
    return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1;
}

void Terminal::print(const QString& text) {
    print(text.toUtf8());
}

void Terminal::print(const QByteArray& bytes) {
    clearProgress();
    if (m_outputError == 0)
        m_outputError = writeAll(STDOUT_FILENO, bytes);
}

void Terminal::printForeign(const QString& text) {
    print(m_outputTerminal ? visibleText(text, LineBreaks::kept) : text);
}

void Terminal::complain(const QString& text) {
    say(QStringLiteral("corvanectl: ") + text);
}

void Terminal::say(const QString& text) {
    clearProgress();
    writeAll(STDERR_FILENO, (visibleText(text, LineBreaks::kept) + QLatin1Char('\n')).toUtf8());
}

void Terminal::showProgress(double fraction, std::optional<double> elapsedSeconds, const QString& message) {
    if (m_canRedraw) {
        showLine(progressText(fraction, elapsedSeconds, message, terminalWidth()));
    } else if (!m_sinceProgress.isValid() || m_sinceProgress.hasExpired(plainProgressMilliseconds)) {
        m_sinceProgress.start();
        say(progressText(fraction, elapsedSeconds, message, plainProgressWidth));
    }
}

void Terminal::showLine(const QString& text) {
    if (!m_canRedraw)
        return;
    writeAll(STDERR_FILENO, eraseLine + cutToWidth(visibleText(text), terminalWidth()).toUtf8());
    m_progressShown = true;
}

void Terminal::clearProgress() {
    if (m_progressShown)
        writeAll(STDERR_FILENO, eraseLine);
    m_progressShown = false;
}

bool Terminal::confirm(const QString& question) {
    writeAll(STDERR_FILENO, (visibleText(question) + QStringLiteral(" [y/N] ")).toUtf8());
    std::string line;
    if (!std::getline(std::cin, line))
        return false;
    const QString answer = QString::fromStdString(line).trimmed().toLower();
    return answer == QLatin1String("y") || answer == QLatin1String("yes");
}

int Terminal::finish(int status) {
    clearProgress();
    if (m_outputError == 0)
        return status;
    if (m_outputError == EPIPE) {
        ::signal(SIGPIPE, SIG_DFL);
        ::raise(SIGPIPE);
    }
    complain(QStringLiteral("standard output: ") +
             QString::fromStdString(std::generic_category().message(m_outputError)));
    return static_cast<int>(ExitStatus::failed);
}

} // namespace corvane::ctl
