// The wall clock as the core needs it, so that no test waits for time to pass. Thread-safe.
#pragma once

#include <QDateTime>

namespace corvane {

class Clock {
public:
    virtual ~Clock() = default;
    // UTC, to the millisecond.
    [[nodiscard]] virtual QDateTime now() const = 0;
};

class SystemClock final : public Clock {
public:
    [[nodiscard]] QDateTime now() const override { return QDateTime::currentDateTimeUtc(); }
};

} // namespace corvane
