#include "CorvaneApp/Composition/TerminationSignals.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace corvane {

namespace {

// A handler may do next to nothing; writing a byte to a pipe is allowed. The pipe lives as long as the process, so that
// a handler never writes to a descriptor that has become something else.
std::array<int, 2> pipeEnds{-1, -1};

void writeToPipe(int number) {
    const int error = errno;
    const auto byte = static_cast<unsigned char>(number);
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    errno = error;
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    if (pipeEnds[0] < 0 && ::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return; // Then the signals end the program at once, as they do by default.
    m_notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TerminationSignals::readPipe);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction previous {};
        if (::sigaction(number, nullptr, &previous) != 0 || previous.sa_handler == SIG_IGN)
            continue;
        struct sigaction action {};
        action.sa_handler = writeToPipe;
        action.sa_flags = SA_RESTART;
        ::sigemptyset(&action.sa_mask);
        if (::sigaction(number, &action, nullptr) == 0)
            m_previous.push_back({number, previous});
    }
}

TerminationSignals::~TerminationSignals() {
    for (const Previous& previous : m_previous)
        ::sigaction(previous.number, &previous.action, nullptr);
}

void TerminationSignals::readPipe() {
    unsigned char number = 0;
    while (::read(pipeEnds[0], &number, 1) == 1) {
        m_last = number;
        Q_EMIT received(number);
    }
}

} // namespace corvane
