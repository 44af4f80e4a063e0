#include "CorvaneCtl/TerminalKeys.h"

#include <QSocketNotifier>

#include <unistd.h>

#include <csignal>

namespace corvane::ctl {

namespace {

// Changing the modes from the background would stop the program, and with it a recording.
void setModes(const termios& modes) {
    const auto before = ::signal(SIGTTOU, SIG_IGN);
    ::tcsetattr(STDIN_FILENO, TCSANOW, &modes);
    ::signal(SIGTTOU, before);
}

bool isInForeground() {
    return ::isatty(STDIN_FILENO) == 1 && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp();
}

} // namespace

TerminalKeys::TerminalKeys() {
    if (!isInForeground() || ::tcgetattr(STDIN_FILENO, &m_before) != 0)
        return;
    termios modes = m_before;
    modes.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO); // ISIG stays, for Ctrl-C
    modes.c_cc[VMIN] = 1;
    modes.c_cc[VTIME] = 0;
    setModes(modes);
    m_notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TerminalKeys::readKeys);
}

TerminalKeys::~TerminalKeys() {
    if (m_notifier)
        setModes(m_before);
}

void TerminalKeys::readKeys() {
    char keys[16];
    const ssize_t count = isInForeground() ? ::read(STDIN_FILENO, keys, sizeof keys) : 0;
    if (count <= 0)
        m_notifier->setEnabled(false); // the terminal is gone, or someone else's
    for (ssize_t i = 0; i < count; ++i)
        Q_EMIT typed(keys[i]);
}

} // namespace corvane::ctl
