// The screen reader as a program, on the session bus of its environment. It says "ready"; then each line of standard
// input is answered by one line of JSON: tree, texts (inserted or removed since the last time), act PATH ACTION, focus
// PATH, write PATH TEXT. It ends with its input.
#include "Support/PrintQt.h"
#include "Support/ScreenReader.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSocketNotifier>

#include <iostream>
#include <string>

using namespace corvane;

namespace {

QJsonDocument answer(ScreenReader& reader, const QString& line) {
    const QString command = line.section(u' ', 0, 0);
    const QString path = line.section(u' ', 1, 1);
    const QString rest = line.section(u' ', 2);
    if (command == u"tree")
        return QJsonDocument(reader.tree());
    if (command == u"texts")
        return QJsonDocument(QJsonArray::fromStringList(reader.takeChangedTexts()));
    if (command == u"act")
        return QJsonDocument(QJsonArray{reader.act(path, rest)});
    if (command == u"focus")
        return QJsonDocument(QJsonArray{reader.focus(path)});
    if (command == u"write")
        return QJsonDocument(QJsonArray{reader.write(path, rest)});
    return QJsonDocument(QJsonArray());
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    ScreenReader reader(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    if (!reader.works())
        return 1;
    std::cout << "ready" << std::endl;
    const QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&reader] {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QCoreApplication::quit();
            return;
        }
        const QJsonDocument reply = answer(reader, QString::fromStdString(line));
        std::cout << reply.toJson(QJsonDocument::Compact).toStdString() << std::endl;
    });
    return QCoreApplication::exec();
}
