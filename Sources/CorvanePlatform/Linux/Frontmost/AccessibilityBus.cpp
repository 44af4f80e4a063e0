#include "CorvanePlatform/Linux/Frontmost/AccessibilityBus.h"

#include <systemd/sd-bus.h>

namespace corvane {

namespace {

constexpr std::chrono::seconds rest{10};
constexpr std::uint32_t stateActive = 1; // ATSPI_STATE_ACTIVE
constexpr std::uint32_t embeds = 13;     // ATSPI_RELATION_EMBEDS: from a browser's window to the page it shows
constexpr std::size_t maximumObjects = 512;

constexpr const char* accessible = "org.a11y.atspi.Accessible";
const QByteArray rootPath = "/org/a11y/atspi/accessible/root";
const QByteArray registryName = "org.a11y.atspi.Registry";
const QByteArray launcherName = "org.a11y.Bus";
const QByteArray launcherPath = "/org/a11y/bus";

bool entered(const BusMessage& message, char type, const char* contents) {
    return message && ::sd_bus_message_enter_container(message.get(), type, contents) > 0;
}

std::optional<QString> textIn(const BusMessage& message) {
    const char* text = nullptr;
    if (!message || ::sd_bus_message_read_basic(message.get(), 's', &text) <= 0)
        return std::nullopt;
    return QString::fromUtf8(text);
}

std::vector<AccessibleObject> objectsIn(const BusMessage& message, char type) {
    std::vector<AccessibleObject> objects;
    if (!entered(message, type, "(so)"))
        return objects;
    const char* name = nullptr;
    const char* path = nullptr;
    while (objects.size() < maximumObjects && ::sd_bus_message_read(message.get(), "(so)", &name, &path) > 0)
        objects.push_back({.busName = name, .path = path}); // NOLINT: the bus does not tell how many
    ::sd_bus_message_exit_container(message.get());
    return objects;
}

// a(ua(so)): the objects of each kind of relation.
std::optional<AccessibleObject> embeddedIn(const BusMessage& relations) {
    if (!entered(relations, 'a', "(ua(so))"))
        return std::nullopt;
    while (entered(relations, 'r', "ua(so)")) {
        std::uint32_t kind = 0;
        ::sd_bus_message_read_basic(relations.get(), 'u', &kind);
        const auto objects = objectsIn(relations, 'a');
        if (kind == embeds && !objects.empty())
            return objects.front();
        ::sd_bus_message_exit_container(relations.get());
    }
    return std::nullopt;
}

BrowserTab tabIn(const BusMessage& attributes) {
    BrowserTab tab;
    if (!entered(attributes, 'a', "{ss}"))
        return tab;
    const char* key = nullptr;
    const char* value = nullptr;
    while (::sd_bus_message_read(attributes.get(), "{ss}", &key, &value) > 0) {
        if (qstrcmp(key, "URI") == 0)
            tab.url = QString::fromUtf8(value).trimmed();
        else if (qstrcmp(key, "Title") == 0)
            tab.title = QString::fromUtf8(value).trimmed();
    }
    return tab;
}

} // namespace

AccessibilityBus::AccessibilityBus(QByteArray sessionBusAddress) : m_sessionBusAddress(std::move(sessionBusAddress)) {}

bool AccessibilityBus::ensureSession() {
    if (m_session && !m_session->isLost())
        return true;
    m_session.reset();
    if (m_sessionBusAddress.isEmpty() || Deadline::Clock::now() < m_nextSession)
        return false;
    m_nextSession = Deadline::Clock::now() + rest;
    m_session = std::make_unique<BusConnection>(m_sessionBusAddress);
    return !m_session->isLost();
}

bool AccessibilityBus::ensureBus(const Deadline& deadline) {
    if (m_bus && !m_bus->isLost())
        return true;
    m_bus.reset();
    m_registry.clear();
    m_processes.clear();
    if (!ensureSession())
        return false;
    const auto address = textIn(m_session->call(
        {.destination = launcherName, .path = launcherPath, .interface = "org.a11y.Bus", .member = "GetAddress"},
        deadline));
    if (!address || address->isEmpty())
        return false;
    m_bus = std::make_unique<BusConnection>(address->toUtf8());
    return !m_bus->isLost();
}

std::optional<bool> AccessibilityBus::isEnabled(const Deadline& deadline) {
    if (!ensureSession())
        return std::nullopt;
    const auto owned = m_session->call({.destination = "org.freedesktop.DBus",
                                        .path = "/org/freedesktop/DBus",
                                        .interface = "org.freedesktop.DBus",
                                        .member = "NameHasOwner",
                                        .arguments = {launcherName}},
                                       deadline);
    int isOwned = 0;
    if (!owned || ::sd_bus_message_read_basic(owned.get(), 'b', &isOwned) <= 0)
        return std::nullopt;
    if (isOwned == 0)
        return false;
    const auto answer = m_session->call({.destination = launcherName,
                                         .path = launcherPath,
                                         .interface = "org.freedesktop.DBus.Properties",
                                         .member = "Get",
                                         .arguments = {"org.a11y.Status", "IsEnabled"}},
                                        deadline);
    int value = 0;
    if (!answer || ::sd_bus_message_read(answer.get(), "v", "b", &value) <= 0)
        return std::nullopt;
    return value != 0;
}

std::vector<AccessibleObject> AccessibilityBus::applications(const Deadline& deadline) {
    if (!ensureBus(deadline))
        return {};
    const auto answer = m_bus->call(
        {.destination = registryName, .path = rootPath, .interface = accessible, .member = "GetChildren"}, deadline);
    if (!answer)
        return {};
    askForActivations(::sd_bus_message_get_sender(answer.get()), deadline);
    auto found = objectsIn(answer, 'a');
    std::erase_if(m_processes, [&found](const auto& entry) {
        return std::ranges::none_of(found, [&entry](const auto& object) { return object.busName == entry.first; });
    });
    return found;
}

// Chromium tells which of its windows is active only while somebody listens for the change.
void AccessibilityBus::askForActivations(const QByteArray& registry, const Deadline& deadline) {
    if (registry == m_registry)
        return;
    if (m_bus->call({.destination = registryName,
                     .path = "/org/a11y/atspi/registry",
                     .interface = "org.a11y.atspi.Registry",
                     .member = "RegisterEvent",
                     .arguments = {"window:activate"}},
                    deadline))
        m_registry = registry;
}

std::optional<qint64> AccessibilityBus::processOf(const QByteArray& busName, const Deadline& deadline) {
    if (const auto known = m_processes.find(busName); known != m_processes.end())
        return known->second;
    if (!ensureBus(deadline))
        return std::nullopt;
    const auto answer = m_bus->call({.destination = "org.freedesktop.DBus",
                                     .path = "/org/freedesktop/DBus",
                                     .interface = "org.freedesktop.DBus",
                                     .member = "GetConnectionUnixProcessID",
                                     .arguments = {busName}},
                                    deadline);
    std::uint32_t process = 0;
    if (!answer || ::sd_bus_message_read_basic(answer.get(), 'u', &process) <= 0)
        return std::nullopt;
    m_processes[busName] = process;
    return process;
}

BusMessage AccessibilityBus::property(const AccessibleObject& object, const char* interface, const char* name,
                                      const Deadline& deadline) {
    if (!ensureBus(deadline))
        return nullptr;
    return m_bus->call({.destination = object.busName,
                        .path = object.path,
                        .interface = "org.freedesktop.DBus.Properties",
                        .member = "Get",
                        .arguments = {interface, name}},
                       deadline);
}

std::optional<QString> AccessibilityBus::name(const AccessibleObject& object, const Deadline& deadline) {
    const auto answer = property(object, accessible, "Name", deadline);
    const char* text = nullptr;
    if (!answer || ::sd_bus_message_read(answer.get(), "v", "s", &text) <= 0)
        return std::nullopt;
    return QString::fromUtf8(text);
}

std::vector<AccessibleObject> AccessibilityBus::children(const AccessibleObject& object, const Deadline& deadline) {
    if (!ensureBus(deadline))
        return {};
    return objectsIn(
        m_bus->call(
            {.destination = object.busName, .path = object.path, .interface = accessible, .member = "GetChildren"},
            deadline),
        'a');
}

bool AccessibilityBus::isActive(const AccessibleObject& window, const Deadline& deadline) {
    if (!ensureBus(deadline))
        return false;
    const auto answer = m_bus->call(
        {.destination = window.busName, .path = window.path, .interface = accessible, .member = "GetState"}, deadline);
    std::uint32_t states = 0; // the first 32 of two words
    return entered(answer, 'a', "u") && ::sd_bus_message_read_basic(answer.get(), 'u', &states) > 0 &&
           (states & (1U << stateActive)) != 0;
}

std::vector<AccessibleObject> AccessibilityBus::windows(const AccessibleObject& application, const Deadline& deadline) {
    auto found = children(application, deadline);
    std::erase_if(found, [&](const AccessibleObject& window) { return window.busName != application.busName; });
    return found;
}

std::optional<AccessibleObject> AccessibilityBus::activeWindow(const AccessibleObject& application,
                                                               const Deadline& deadline) {
    for (const AccessibleObject& window : windows(application, deadline))
        if (isActive(window, deadline))
            return window;
    return std::nullopt;
}

std::optional<BrowserTab> AccessibilityBus::shownDocument(const AccessibleObject& window, const Deadline& deadline) {
    if (!ensureBus(deadline))
        return std::nullopt;
    const auto document = embeddedIn(m_bus->call(
        {.destination = window.busName, .path = window.path, .interface = accessible, .member = "GetRelationSet"},
        deadline));
    if (!document || document->busName != window.busName)
        return std::nullopt;
    // Chromium begins to keep the attributes when it is first asked for them.
    for (int attempt = 0; attempt < 2; ++attempt) {
        auto tab = tabIn(m_bus->call({.destination = document->busName,
                                      .path = document->path,
                                      .interface = "org.a11y.atspi.Document",
                                      .member = "GetAttributes"},
                                     deadline));
        if (!tab.url.isEmpty())
            return tab;
    }
    return std::nullopt;
}

} // namespace corvane
