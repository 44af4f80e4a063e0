// PrivateAudioServer [--pipewire]: starts a private sound server for a script, prints the value for PULSE_SERVER and
// serves until its standard input is closed or it is ended. A line of standard input is one of the words below or those
// of pactl; it is answered with one line, "ok" or what failed.
#include "Support/PrivateAudioServer.h"

#include <QCoreApplication>

#include <cstdio>
#include <iostream>
#include <string>
#include <string_view>

namespace {

void obey(corvane::PrivateAudioServer& server, const QString& line) {
    const QString device = line.section(u' ', 1);
    if (line == u"kill")
        server.kill();
    else if (line == u"start")
        server.start();
    else if (line == u"stall")
        server.stall();
    else if (line == u"proceed")
        server.proceed();
    else if (line.startsWith(u"load "))
        server.loadDevice(device);
    else if (line.startsWith(u"unload "))
        server.unloadDevice(device);
    else
        server.control(line);
}

} // namespace

int main(int argc, char** argv) {
    using corvane::PrivateAudioServer;
    const QCoreApplication application(argc, argv);
    const bool isPipeWire = argc > 1 && std::string_view(argv[1]) == "--pipewire";
    try {
        PrivateAudioServer server(isPipeWire ? PrivateAudioServer::Kind::pipeWire
                                             : PrivateAudioServer::Kind::pulseAudio);
        std::cout << server.address().toStdString() << std::endl;
        for (std::string line; std::getline(std::cin, line);) {
            try {
                obey(server, QString::fromStdString(line));
                std::cout << "ok" << std::endl;
            } catch (const std::exception& error) {
                std::cout << QString::fromUtf8(error.what()).simplified().toStdString() << std::endl;
            }
        }
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
