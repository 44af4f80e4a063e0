// Lines for worker.stderr.log, which the application keeps in the run directory. Any thread.
#pragma once

#include <QString>

#include <cstdio>

namespace corvane {

inline void logLine(const QString& text) {
    const QByteArray line = text.toUtf8() + '\n';
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stderr);
    std::fflush(stderr);
}

} // namespace corvane
