#include "Support/ScreenReader.h"

#include "Support/PrintQt.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QJsonArray>

#include <array>
#include <utility>

namespace corvane {

namespace {

const QString connectionName = u"screen-reader"_s;
const QString registry = u"org.a11y.atspi.Registry"_s;
const QString rootPath = u"/org/a11y/atspi/accessible/root"_s;
const QString properties = u"org.freedesktop.DBus.Properties"_s;
constexpr int patienceMilliseconds = 5000;
constexpr std::size_t mostElements = 20'000; // more is a tree that goes round in a circle

QString interfaceNamed(const char* name) {
    return u"org.a11y.atspi."_s + QString::fromLatin1(name);
}

// As the protocol numbers them.
constexpr std::array stateNames{
    "invalid",       "active",         "armed",           "busy",       "checked",    "collapsed",
    "defunct",       "editable",       "enabled",         "expandable", "expanded",   "focusable",
    "focused",       "has-tooltip",    "horizontal",      "iconified",  "modal",      "multi-line",
    "multi-select",  "opaque",         "pressed",         "resizable",  "selectable", "selected",
    "sensitive",     "showing",        "single-line",     "stale",      "transient",  "vertical",
    "visible",       "manages-rows",   "indeterminate",   "required",   "truncated",  "animated",
    "invalid-entry", "autocompletion", "selectable-text", "default",    "visited",    "checkable",
    "has-popup",     "read-only"};

QJsonArray statesIn(const QDBusMessage& reply) {
    const auto words = qdbus_cast<QList<uint>>(reply.arguments().value(0));
    QJsonArray states;
    for (std::size_t i = 0; i < stateNames.size(); ++i) {
        const auto word = static_cast<qsizetype>(i / 32);
        if (word < words.size() && (words[word] >> (i % 32) & 1U) != 0)
            states.append(QString::fromLatin1(stateNames.at(i)));
    }
    return states;
}

// The services and paths of an array of references.
QList<std::pair<QString, QString>> referencesIn(const QDBusMessage& reply) {
    QList<std::pair<QString, QString>> references;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return references;
    const auto argument = reply.arguments().first().value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QString service;
        QDBusObjectPath path;
        argument.beginStructure();
        argument >> service >> path;
        argument.endStructure();
        references.append({service, path.path()});
    }
    argument.endArray();
    return references;
}

QStringList actionsIn(const QDBusMessage& reply) {
    QStringList actions;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return actions;
    const auto argument = reply.arguments().first().value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QString name;
        QString description;
        QString keys;
        argument.beginStructure();
        argument >> name >> description >> keys;
        argument.endStructure();
        actions.append(name);
    }
    argument.endArray();
    return actions;
}

// The bridge of the toolkit has the name of a text field for both kinds.
QString roleOf(const QDBusMessage& number, const QDBusMessage& name) {
    constexpr uint passwordText = 40;
    return number.arguments().value(0).toUInt() == passwordText ? u"password text"_s
                                                                : name.arguments().value(0).toString();
}

QVariant propertyIn(const QDBusMessage& reply) {
    return qdbus_cast<QDBusVariant>(reply.arguments().value(0)).variant();
}

bool isTrue(const QDBusMessage& reply) {
    return reply.arguments().value(0).toBool();
}

QDBusMessage answer(QDBusPendingCall& call) {
    call.waitForFinished();
    return call.reply();
}

} // namespace

ScreenReader::ScreenReader(const QString& sessionBus) : m_bus(QString()) {
    QDBusConnection session = QDBusConnection::connectToBus(sessionBus, connectionName + u"-session"_s);
    const QDBusMessage reply = session.call(
        QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s),
        QDBus::Block, patienceMilliseconds);
    m_bus = QDBusConnection::connectToBus(reply.arguments().value(0).toString(), connectionName);
    // An application sends only what somebody has asked for.
    const QDBusMessage registered = ask(registry, u"/org/a11y/atspi/registry"_s, interfaceNamed("Registry"),
                                        u"RegisterEvent"_s, {u"object:text-changed"_s});
    m_works = registered.type() == QDBusMessage::ReplyMessage &&
              m_bus.connect(QString(), QString(), interfaceNamed("Event.Object"), u"TextChanged"_s, this,
                            SLOT(hearText(QDBusMessage)));
}

ScreenReader::~ScreenReader() {
    QDBusConnection::disconnectFromBus(connectionName);
    QDBusConnection::disconnectFromBus(connectionName + u"-session"_s);
}

QDBusMessage ScreenReader::ask(const QString& service, const QString& path, const QString& interface,
                               const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return m_bus.call(message, QDBus::Block, patienceMilliseconds);
}

// One that was killed is still listed for a moment.
QString ScreenReader::newestApplication() {
    const auto applications = referencesIn(ask(registry, rootPath, interfaceNamed("Accessible"), u"GetChildren"_s));
    for (auto one = applications.rbegin(); one != applications.rend(); ++one) {
        const QDBusMessage name =
            ask(one->first, rootPath, properties, u"Get"_s, {interfaceNamed("Accessible"), u"Name"_s});
        if (propertyIn(name).toString() == u"Corvane")
            return one->first;
    }
    return {};
}

QDBusPendingCall ScreenReader::askLater(const QString& path, const QString& interface, const QString& method,
                                        const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(m_application, path, interface, method);
    message.setArguments(arguments);
    return m_bus.asyncCall(message, patienceMilliseconds);
}

// Asks for everything of one level at once: each question alone would cost a way to the other process and back.
void ScreenReader::describe(std::vector<Element>& elements, std::size_t from) {
    struct Questions {
        QDBusPendingCall role, roleName, name, description, states, interfaces, children;
    };
    const QString accessible = interfaceNamed("Accessible");
    const std::size_t end = elements.size();
    std::vector<Questions> questions;
    questions.reserve(end - from);
    for (std::size_t i = from; i < end; ++i) {
        const QString& path = elements[i].path;
        questions.push_back({askLater(path, accessible, u"GetRole"_s), askLater(path, accessible, u"GetRoleName"_s),
                             askLater(path, properties, u"Get"_s, {accessible, u"Name"_s}),
                             askLater(path, properties, u"Get"_s, {accessible, u"Description"_s}),
                             askLater(path, accessible, u"GetState"_s), askLater(path, accessible, u"GetInterfaces"_s),
                             askLater(path, accessible, u"GetChildren"_s)});
    }
    for (std::size_t i = from; i < end; ++i) {
        Questions& one = questions[i - from];
        QJsonArray interfaces;
        for (const QString& interface : answer(one.interfaces).arguments().value(0).toStringList())
            interfaces.append(interface.section(u'.', -1));
        elements[i].facts = {{u"path"_s, elements[i].path},
                             {u"role"_s, roleOf(answer(one.role), answer(one.roleName))},
                             {u"name"_s, propertyIn(answer(one.name)).toString()},
                             {u"description"_s, propertyIn(answer(one.description)).toString()},
                             {u"states"_s, statesIn(answer(one.states))},
                             {u"interfaces"_s, interfaces}};
        for (const auto& [service, child] : referencesIn(answer(one.children))) {
            if (service == m_application)
                elements.push_back({child, i, {}});
        }
    }
}

void ScreenReader::addContents(std::vector<Element>& elements) {
    struct Question {
        std::size_t element;
        QString interface;
        QDBusPendingCall content;
    };
    std::vector<Question> questions;
    questions.reserve(2 * elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const QString& path = elements[i].path;
        const auto interfaces = elements[i].facts[u"interfaces"_s].toArray();
        if (interfaces.contains(u"Action"_s))
            questions.push_back({i, u"Action"_s, askLater(path, interfaceNamed("Action"), u"GetActions"_s)});
        if (interfaces.contains(u"Text"_s))
            questions.push_back({i, u"Text"_s, askLater(path, interfaceNamed("Text"), u"GetText"_s, {0, -1})});
        if (interfaces.contains(u"Value"_s))
            questions.push_back(
                {i, u"Value"_s, askLater(path, properties, u"Get"_s, {interfaceNamed("Value"), u"CurrentValue"_s})});
    }
    for (Question& one : questions) {
        const QDBusMessage content = answer(one.content);
        QJsonObject& facts = elements[one.element].facts;
        if (one.interface == u"Action"_s)
            facts[u"actions"_s] = QJsonArray::fromStringList(actionsIn(content));
        else if (one.interface == u"Text"_s)
            facts[u"text"_s] = content.arguments().value(0).toString();
        else
            facts[u"value"_s] = propertyIn(content).toDouble();
    }
}

QJsonObject ScreenReader::tree() {
    m_application = newestApplication();
    if (m_application.isEmpty())
        return {};
    std::vector<Element> elements{{rootPath, 0, {}}};
    for (std::size_t from = 0; from < elements.size() && elements.size() < mostElements;) {
        const std::size_t end = elements.size();
        describe(elements, from);
        from = end;
    }
    addContents(elements);
    for (std::size_t i = elements.size() - 1; i > 0; --i) {
        QJsonObject& parent = elements[elements[i].parent].facts;
        QJsonArray siblings = parent[u"children"_s].toArray();
        siblings.prepend(elements[i].facts);
        parent[u"children"_s] = siblings;
    }
    return elements.front().facts;
}

bool ScreenReader::act(const QString& path, const QString& action) {
    const auto actions = actionsIn(ask(m_application, path, interfaceNamed("Action"), u"GetActions"_s));
    const auto index = static_cast<int>(actions.indexOf(action));
    return index >= 0 && isTrue(ask(m_application, path, interfaceNamed("Action"), u"DoAction"_s, {index}));
}

bool ScreenReader::focus(const QString& path) {
    return isTrue(ask(m_application, path, interfaceNamed("Component"), u"GrabFocus"_s));
}

bool ScreenReader::write(const QString& path, const QString& text) {
    return isTrue(ask(m_application, path, interfaceNamed("EditableText"), u"SetTextContents"_s, {text}));
}

void ScreenReader::hearText(const QDBusMessage& event) {
    m_changedTexts.append(qdbus_cast<QDBusVariant>(event.arguments().value(3)).variant().toString());
}

QStringList ScreenReader::takeChangedTexts() {
    return std::exchange(m_changedTexts, {});
}

} // namespace corvane
