// Launches a program, writes its process id to standard output and waits to be killed.
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include <unistd.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc < 2)
        return 2;
    corvane::ProcessRequest request{.executable = QString::fromUtf8(argv[1]),
                                    .arguments = {},
                                    .environment = {},
                                    .standardOutput = QStringLiteral("/dev/null"),
                                    .standardError = QStringLiteral("/dev/null")};
    for (int i = 2; i < argc; ++i)
        request.arguments.append(QString::fromUtf8(argv[i]));
    const auto process = corvane::LinuxProcessLauncher().launch(request, {});
    std::printf("%lld\n", static_cast<long long>(process->processID()));
    std::fflush(stdout);
    while (true)
        ::pause();
}
