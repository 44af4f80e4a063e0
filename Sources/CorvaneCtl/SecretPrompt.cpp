#include "CorvaneCtl/SecretPrompt.h"

#include "CorvaneCtl/CtlError.h"

#include <QStringDecoder>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

namespace corvane::ctl {

namespace {

constexpr char controlC = 3;
constexpr qsizetype longestSecret = 64 * 1024;

termios modesBefore;

void restoreModesAndEnd(int number) {
    ::tcsetattr(STDIN_FILENO, TCSANOW, &modesBefore);
    ::raise(number); // whose handler is reset by now
}

// While it lives the terminal shows nothing of what is typed, and Ctrl-C ends the line instead of the program. A signal
// from elsewhere ends the program, but not before the terminal is as it was.
class HiddenTyping {
public:
    HiddenTyping() : m_isTerminal(::isatty(STDIN_FILENO) == 1 && ::tcgetattr(STDIN_FILENO, &modesBefore) == 0) {
        if (!m_isTerminal)
            return;
        struct sigaction restore {};
        restore.sa_handler = restoreModesAndEnd;
        restore.sa_flags = static_cast<int>(SA_RESETHAND);
        for (std::size_t i = 0; i < signalNumbers.size(); ++i) {
            ::sigaction(signalNumbers[i], nullptr, &m_actionsBefore[i]);
            if (m_actionsBefore[i].sa_handler != SIG_IGN)
                ::sigaction(signalNumbers[i], &restore, nullptr);
        }
        termios hidden = modesBefore;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
        hidden.c_lflag |= ICANON;
        hidden.c_cc[VEOL] = controlC;
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    ~HiddenTyping() {
        if (!m_isTerminal)
            return;
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &modesBefore);
        for (std::size_t i = 0; i < signalNumbers.size(); ++i)
            ::sigaction(signalNumbers[i], &m_actionsBefore[i], nullptr);
    }
    HiddenTyping(const HiddenTyping&) = delete;
    HiddenTyping& operator=(const HiddenTyping&) = delete;

    [[nodiscard]] bool isTerminal() const { return m_isTerminal; }

private:
    static constexpr std::array signalNumbers{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

    bool m_isTerminal;
    std::array<struct sigaction, signalNumbers.size()> m_actionsBefore{};
};

void print(const QByteArray& text) {
    [[maybe_unused]] const ssize_t ignored = ::write(STDERR_FILENO, text.constData(), static_cast<size_t>(text.size()));
}

void forbidCoreFiles() {
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::prctl(PR_SET_DUMPABLE, 0); // where cores are handed to a program the limit does not count
}

enum class Ending { line, calledOff, tooLong };

// Not through a buffered stream, which would keep a copy. `line` has the room, so that it is not copied either.
Ending readLine(QByteArray& line) {
    line.reserve(longestSecret);
    char byte = 0;
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
        if (count < 0 && errno == EINTR)
            continue;
        if (count != 1 || byte == '\n')
            return Ending::line;
        if (byte == controlC)
            return Ending::calledOff;
        if (line.size() == longestSecret)
            return Ending::tooLong;
        line += byte;
    }
}

} // namespace

std::optional<QString> readSecret(const QString& prompt) {
    forbidCoreFiles();
    QByteArray line;
    Ending ending = Ending::line;
    {
        const HiddenTyping hidden;
        if (hidden.isTerminal())
            print(prompt.toUtf8());
        ending = readLine(line);
        if (hidden.isTerminal())
            print("\n");
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString secret = QString(decoder(line)).trimmed();
    ::explicit_bzero(line.data(), static_cast<size_t>(line.size()));
    if (ending == Ending::tooLong)
        throw CtlError(QStringLiteral("that is too long for a token"));
    if (ending == Ending::calledOff || secret.isEmpty())
        return std::nullopt;
    if (decoder.hasError() || !std::all_of(secret.begin(), secret.end(), [](QChar c) { return c.isPrint(); }))
        throw CtlError(QStringLiteral("that is no token: it holds control characters or is not valid UTF-8"));
    return secret;
}

} // namespace corvane::ctl
