// Keeps every warning that Qt writes while it lives, those of the view engine among them. One at a time; main thread.
#pragma once

#include <QStringList>
#include <QtGlobal>

namespace corvane {

class Warnings {
public:
    Warnings() : m_before(qInstallMessageHandler(&Warnings::take)) { said().clear(); }
    Warnings(const Warnings&) = delete;
    Warnings& operator=(const Warnings&) = delete;
    ~Warnings() { qInstallMessageHandler(m_before); }
    static QStringList& said() {
        static QStringList lines;
        return lines;
    }

private:
    static void take(QtMsgType type, const QMessageLogContext&, const QString& text) {
        // Of a screen that exists in memory only.
        const bool isOfPlatform =
            text.startsWith(QLatin1String("This plugin")) || text.startsWith(QLatin1String("Scenegraph"));
        if (type != QtDebugMsg && type != QtInfoMsg && !isOfPlatform)
            said() << text;
    }
    QtMessageHandler m_before;
};

} // namespace corvane
