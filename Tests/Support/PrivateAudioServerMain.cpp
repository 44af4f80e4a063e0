// PrivateAudioServer [--pipewire]: starts a private sound server for a script, prints the value for PULSE_SERVER and
// serves until its standard input is closed or it is ended.
#include "Support/PrivateAudioServer.h"

#include <QCoreApplication>

#include <unistd.h>

#include <cstdio>
#include <string_view>

int main(int argc, char** argv) {
    using corvane::PrivateAudioServer;
    const QCoreApplication application(argc, argv);
    const bool isPipeWire = argc > 1 && std::string_view(argv[1]) == "--pipewire";
    try {
        const PrivateAudioServer server(isPipeWire ? PrivateAudioServer::Kind::pipeWire
                                                   : PrivateAudioServer::Kind::pulseAudio);
        std::printf("%s\n", server.address().toUtf8().constData());
        std::fflush(stdout);
        for (char byte = 0; ::read(STDIN_FILENO, &byte, 1) > 0;) {
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
