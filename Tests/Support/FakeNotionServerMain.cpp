// FakeNotionServer [DATABASES.json]: a Notion on the loopback, for developers and for scripts. It prints the base
// address for the client and serves until its standard input is closed. DATABASES.json is what FakeNotionService::load
// takes. A line of standard input is a command, answered with one line:
//
//   pages                          all pages with their blocks, JSON
//   requests                       all requests since the last "forget", to the letter, JSON
//   forget                         forgets the requests, faults and refusals; the pages stay
//   fault NUMBER NAME              silent, hangUp, byteByByte or cutShort for that request, counted from 0
//   refuse NUMBER STATUS [BODY]    answers that request so, and does not do what it asks
#include "Support/FakeNotionServer.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Json/JsonWriter.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QSocketNotifier>

#include <unistd.h>

#include <array>
#include <iostream>
#include <stdexcept>

namespace {

using corvane::FakeNotionServer;
using corvane::Fault;

std::string line(const QString& key, const QJsonArray& list) {
    return corvane::compactJson(QJsonObject{{key, list}}).toStdString();
}

QJsonArray describe(const std::vector<corvane::ReceivedRequest>& requests) {
    return corvane::encodeArray(requests, [](const corvane::ReceivedRequest& request) {
        QJsonArray headers;
        for (const auto& [name, value] : request.headers)
            headers.append(QString::fromUtf8(name + ": " + value));
        return QJsonObject{{QStringLiteral("method"), QString::fromUtf8(request.method)},
                           {QStringLiteral("target"), QString::fromUtf8(request.target)},
                           {QStringLiteral("headers"), headers},
                           {QStringLiteral("body"), QString::fromUtf8(request.body)}};
    });
}

Fault faultNamed(const QString& name) {
    const std::map<QString, Fault> faults{{QStringLiteral("silent"), Fault::silent},
                                          {QStringLiteral("hangUp"), Fault::hangUp},
                                          {QStringLiteral("byteByByte"), Fault::byteByByte},
                                          {QStringLiteral("cutShort"), Fault::cutShort}};
    const auto found = faults.find(name);
    if (found == faults.end())
        throw std::runtime_error("no such fault");
    return found->second;
}

std::string obey(FakeNotionServer& server, const QString& command) {
    const QString verb = command.section(QLatin1Char(' '), 0, 0);
    const std::size_t number = command.section(QLatin1Char(' '), 1, 1).toULongLong();
    const QString what = command.section(QLatin1Char(' '), 2, 2);
    if (verb == u"pages")
        return line(verb, server.describePages().toQJson().toArray());
    if (verb == u"requests")
        return line(verb, describe(server.requests()));
    if (verb == u"forget")
        server.forget();
    else if (verb == u"fault")
        server.faults[number] = faultNamed(what);
    else if (verb == u"refuse")
        server.replacements[number] = {
            .status = what.toInt(), .headers = {}, .body = command.section(QLatin1Char(' '), 3).toUtf8()};
    else
        throw std::runtime_error("no such command");
    return "ok";
}

// Obeys the whole lines that have come.
void obeyLines(FakeNotionServer& server, QByteArray& unread) {
    std::array<char, 4096> buffer{};
    const auto count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count <= 0) {
        QCoreApplication::quit();
        return;
    }
    unread.append(buffer.data(), count);
    for (qsizetype end = unread.indexOf('\n'); end >= 0; end = unread.indexOf('\n')) {
        const QString command = QString::fromUtf8(unread.first(end));
        unread.remove(0, end + 1);
        try {
            std::cout << obey(server, command) << std::endl;
        } catch (const std::exception& error) {
            std::cout << error.what() << std::endl;
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    try {
        FakeNotionServer server;
        if (argc > 1) {
            const auto databases = corvane::readFile(QString::fromLocal8Bit(argv[1]));
            if (!databases)
                throw std::runtime_error(std::string(argv[1]) + " cannot be read");
            server.load(*databases);
        }
        std::cout << server.baseURL().toString().toStdString() << std::endl;
        QByteArray unread;
        const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
        QObject::connect(&input, &QSocketNotifier::activated, &application, [&] { obeyLines(server, unread); });
        return QCoreApplication::exec();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
