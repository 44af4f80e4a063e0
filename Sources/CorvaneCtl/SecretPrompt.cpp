#include "CorvaneCtl/SecretPrompt.h"

#include <sys/resource.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>

namespace corvane::ctl {

namespace {

constexpr char controlC = 3;
constexpr qsizetype longestSecret = 64 * 1024;

// While it lives the terminal shows nothing of what is typed, and Ctrl-C ends the line instead of the program, which
// would leave the terminal as it is.
class HiddenTyping {
public:
    HiddenTyping() : m_isTerminal(::isatty(STDIN_FILENO) == 1 && ::tcgetattr(STDIN_FILENO, &m_before) == 0) {
        if (!m_isTerminal)
            return;
        termios hidden = m_before;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
        hidden.c_lflag |= ICANON;
        hidden.c_cc[VEOL] = controlC;
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    ~HiddenTyping() {
        if (m_isTerminal)
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
    }
    HiddenTyping(const HiddenTyping&) = delete;
    HiddenTyping& operator=(const HiddenTyping&) = delete;

    [[nodiscard]] bool isTerminal() const { return m_isTerminal; }

private:
    termios m_before{};
    bool m_isTerminal;
};

void print(const QByteArray& text) {
    [[maybe_unused]] const ssize_t ignored = ::write(STDERR_FILENO, text.constData(), static_cast<size_t>(text.size()));
}

} // namespace

std::optional<QString> readSecret(const QString& prompt) {
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    const HiddenTyping hidden;
    if (hidden.isTerminal())
        print(prompt.toUtf8());
    QByteArray line;
    char byte = 0;
    ssize_t count = 0;
    // Not through a buffered stream, which would keep a copy.
    while ((count = ::read(STDIN_FILENO, &byte, 1)) == 1 || (count < 0 && errno == EINTR)) {
        if (count < 0)
            continue;
        if (byte == '\n' || byte == controlC || line.size() == longestSecret)
            break;
        line += byte;
    }
    if (hidden.isTerminal())
        print("\n");
    const QString secret = QString::fromUtf8(line).trimmed();
    return secret.isEmpty() || byte == controlC ? std::nullopt : std::optional(secret);
}

} // namespace corvane::ctl
