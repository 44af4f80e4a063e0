// A connection to a D-Bus whose every step has a deadline: connecting, saying hello, calling. Owned by the look at the
// desktop, on its thread, and on no other.
#pragma once

#include "CorvanePlatform/Linux/Frontmost/Deadline.h"

#include <QByteArray>

#include <map>
#include <memory>
#include <vector>

struct sd_bus;
struct sd_bus_message;

namespace corvane {

struct BusMessageUnref {
    void operator()(sd_bus_message* message) const;
};
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageUnref>;

struct BusCall {
    QByteArray destination;
    QByteArray path;
    const char* interface;
    const char* member;
    std::vector<QByteArray> arguments = {}; // all that is called here takes texts
};

class BusConnection {
public:
    // An address as in DBUS_SESSION_BUS_ADDRESS. Waits for nothing; an address that leads nowhere gives a connection
    // that is lost.
    explicit BusConnection(const QByteArray& address);
    ~BusConnection();
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;

    // The answer; nothing if it is an error or does not come within 300 ms. A name that did not answer in time is left
    // alone for 10 s: a stopped program would cost as much each time. No call starts a service.
    [[nodiscard]] BusMessage call(const BusCall& question, const Deadline& deadline);

    [[nodiscard]] bool isLost() const { return m_bus == nullptr; }

private:
    [[nodiscard]] bool await(const bool& isAnswered, const Deadline& deadline);
    void lose();

    sd_bus* m_bus = nullptr;
    std::map<QByteArray, Deadline::Clock::time_point> m_leftAloneUntil;
};

} // namespace corvane
