// How corvanectl ends, and the one exception that its commands end with. The text is what follows "corvanectl: ".
#pragma once

#include "CorvaneContract/Error.h"

namespace corvane::ctl {

// Told in the manual page; scripts rely on the numbers.
enum class ExitStatus : int {
    ok = 0,
    failed = 1,
    usage = 2,
    noSuchMeeting = 3, // or no such profile, or more than one that fits
    notReady = 4,      // doctor: something that is needed does not work
};

// What a program that a signal has ended reports, as a shell puts it.
[[nodiscard]] constexpr int statusOfSignal(int number) {
    return 128 + number;
}

class CtlError : public Error {
public:
    explicit CtlError(const QString& text, ExitStatus status = ExitStatus::failed) : Error(text), m_status(status) {}
    [[nodiscard]] ExitStatus status() const { return m_status; }

private:
    ExitStatus m_status;
};

class UsageError : public CtlError {
public:
    explicit UsageError(const QString& text) : CtlError(text, ExitStatus::usage) {}
};

// A signal asked the program to end while it waited.
class Interrupted : public Error {
public:
    explicit Interrupted(int number) : Error(QStringLiteral("Interrupted")), m_number(number) {}
    [[nodiscard]] int number() const { return m_number; }

private:
    int m_number;
};

} // namespace corvane::ctl
