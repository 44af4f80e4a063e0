// The fake tray as a program, on the session bus of its environment. It says "ready"; then each line of standard input
// is answered by one line of JSON: items, menu, property NAME, choose TEXT, click, leave (the tray goes), come (a tray
// is there again). It ends with its input.
#include "Support/FakeTray.h"
#include "Support/PrintQt.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSocketNotifier>

#include <iostream>
#include <optional>
#include <string>

using namespace corvane;

namespace {

QJsonArray answer(std::optional<FakeTray>& tray, const QString& command, const QString& argument) {
    if (command == u"come"_s)
        tray.emplace(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    if (command == u"leave"_s)
        tray.reset();
    if (!tray)
        return {};
    if (command == u"items"_s)
        return QJsonArray::fromStringList(tray->items());
    if (command == u"menu"_s)
        return QJsonArray::fromStringList(tray->menu());
    if (command == u"property"_s)
        return {tray->property(argument)};
    if (command == u"choose"_s)
        return {tray->choose(argument)};
    if (command == u"click"_s)
        tray->click();
    return {};
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    std::optional<FakeTray> tray(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    if (!tray->works())
        return 1;
    std::cout << "ready" << std::endl;
    const QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&tray] {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QCoreApplication::quit();
            return;
        }
        const QString text = QString::fromStdString(line);
        const QJsonArray reply = answer(tray, text.section(u' ', 0, 0), text.section(u' ', 1));
        std::cout << QJsonDocument(reply).toJson(QJsonDocument::Compact).toStdString() << std::endl;
    });
    return QCoreApplication::exec();
}
