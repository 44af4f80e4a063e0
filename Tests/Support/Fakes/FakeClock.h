// A clock that stands still until the test moves it. Thread-safe.
#pragma once

#include "CorvaneCore/Interfaces/Clock.h"

#include <atomic>

namespace corvane {

class FakeClock final : public Clock {
public:
    [[nodiscard]] QDateTime now() const override { return QDateTime::fromMSecsSinceEpoch(m_now, Qt::UTC); }
    void set(const QDateTime& now) { m_now = now.toMSecsSinceEpoch(); }
    void advance(double seconds) { m_now += static_cast<qint64>(seconds * 1000.0); }

private:
    std::atomic<qint64> m_now = 1'772'460'000'000; // 2026-03-02T14:00:00Z
};

} // namespace corvane
