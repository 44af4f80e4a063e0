// A connection of its owner's own to the session or the system bus, made when it is first asked for and made anew if it
// was lost. Main thread, which never waits for the bus.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>
#include <optional>
#include <vector>

namespace corvane {

class DesktopBus final : public QObject {
public:
    enum class Which { session, system };

    explicit DesktopBus(Which which, QObject* parent = nullptr);
    ~DesktopBus() override;

    // Empty if there is no such bus. Left to itself the library would start a session bus, which nobody ends again.
    [[nodiscard]] static QString address(Which which);
    // To be called before a slot is connected that takes one of the library's own types: unless the type is known by
    // its name, that fails without a word.
    static void makeTypesKnown();

    // Calls back on the main loop with the connection, or with nothing if there is no bus. Where it is connected
    // already, at once.
    using Use = std::function<void(QDBusConnection*)>;
    void use(Use use);

    // Calls a method and gives the reply, or nothing, on the main loop.
    using OnReply = std::function<void(const std::optional<QDBusMessage>&)>;
    void call(const QDBusMessage& message, OnReply onReply);

private:
    void connectToBus();
    void serve(QDBusConnection* bus);

    Which m_which;
    QString m_name;
    std::optional<QDBusConnection> m_bus;
    std::vector<Use> m_waiting;
};

} // namespace corvane
