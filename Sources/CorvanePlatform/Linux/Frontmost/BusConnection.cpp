#include "CorvanePlatform/Linux/Frontmost/BusConnection.h"

#include <systemd/sd-bus.h>

namespace corvane {

namespace {

constexpr std::chrono::milliseconds patience{300};
constexpr std::chrono::milliseconds fairChance{100}; // with less left a name is not to blame
constexpr std::chrono::seconds rest{10};

struct Reply {
    bool isAnswered = false;
    BusMessage message;
};

int keepReply(sd_bus_message* message, void* reply, sd_bus_error* /*error*/) {
    auto* const kept = static_cast<Reply*>(reply);
    kept->isAnswered = true;
    kept->message.reset(::sd_bus_message_ref(message));
    return 0;
}

BusMessage composed(sd_bus* bus, const BusCall& question) {
    sd_bus_message* made = nullptr;
    if (::sd_bus_message_new_method_call(bus, &made, question.destination.constData(), question.path.constData(),
                                         question.interface, question.member) < 0)
        return nullptr;
    BusMessage message(made);
    ::sd_bus_message_set_auto_start(made, 0);
    for (const QByteArray& argument : question.arguments)
        if (::sd_bus_message_append_basic(made, 's', argument.constData()) < 0)
            return nullptr;
    return message;
}

} // namespace

void BusMessageUnref::operator()(sd_bus_message* message) const {
    ::sd_bus_message_unref(message);
}

BusConnection::BusConnection(const QByteArray& address) {
    if (::sd_bus_new(&m_bus) < 0) {
        m_bus = nullptr;
        return;
    }
    if (::sd_bus_set_address(m_bus, address.constData()) < 0 || ::sd_bus_set_bus_client(m_bus, 1) < 0 ||
        ::sd_bus_start(m_bus) < 0)
        lose();
}

BusConnection::~BusConnection() {
    lose();
}

void BusConnection::lose() {
    if (m_bus)
        ::sd_bus_close_unref(m_bus); // sends nothing any more, and so waits for nothing
    m_bus = nullptr;
}

BusMessage BusConnection::call(const BusCall& question, const Deadline& deadline) {
    const auto start = Deadline::Clock::now();
    const auto leftAlone = m_leftAloneUntil.find(question.destination);
    if (leftAlone != m_leftAloneUntil.end()) {
        if (start < leftAlone->second)
            return nullptr;
        m_leftAloneUntil.erase(leftAlone);
    }
    if (isLost() || deadline.isOver())
        return nullptr;
    Reply reply;
    const BusMessage message = composed(m_bus, question);
    sd_bus_slot* slot = nullptr;
    if (!message || ::sd_bus_call_async(m_bus, &slot, message.get(), keepReply, &reply, UINT64_MAX) < 0)
        return nullptr;
    const bool isAnswered = await(reply.isAnswered, deadline.within(patience));
    ::sd_bus_slot_unref(slot); // an answer that comes later finds nobody
    const auto end = Deadline::Clock::now();
    if (!isAnswered && !isLost() && end - start >= fairChance)
        m_leftAloneUntil[question.destination] = end + rest;
    if (!isAnswered || ::sd_bus_message_is_method_error(reply.message.get(), nullptr) != 0)
        return nullptr;
    return std::move(reply.message);
}

bool BusConnection::await(const bool& isAnswered, const Deadline& deadline) {
    while (!isAnswered) {
        const int progress = ::sd_bus_process(m_bus, nullptr);
        if (progress > 0)
            continue;
        const int events = progress < 0 ? progress : ::sd_bus_get_events(m_bus);
        if (events < 0) {
            lose();
            return false;
        }
        if (!deadline.awaitReady(::sd_bus_get_fd(m_bus), static_cast<short>(events)))
            return false;
    }
    return true;
}

} // namespace corvane
