#include "CorvaneCore/Jobs/WorkerLocator.h"

#include "CorvaneContract/Jobs/WorkerArguments.h"

#include <QDir>
#include <QFileInfo>

namespace corvane {

bool isExecutableFile(const QString& path) {
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable();
}

std::optional<QString> WorkerLocator::resolve() const {
    const auto override = environment.find(workerEnvironment::path);
    if (override != environment.end() && fileExists(override->second))
        return override->second;

    QStringList candidates;
    if (bundleResourceDirectory)
        candidates.append(*bundleResourceDirectory + QStringLiteral("/worker/bin/corvane-worker"));
    candidates.append(currentDirectory + QStringLiteral("/.venv/bin/corvane-worker"));
    candidates.append(currentDirectory + QStringLiteral("/worker/.venv/bin/corvane-worker"));
    // Only the two that climb are cleaned, so that a reader of a log sees a plain path.
    for (const char* climb : {"/../..", "/../../.."})
        candidates.append(QDir::cleanPath(currentDirectory + QLatin1String(climb) +
                                          QStringLiteral("/worker/.venv/bin/corvane-worker")));
    for (const QString& candidate : candidates) {
        if (fileExists(candidate))
            return candidate;
    }
    return std::nullopt;
}

} // namespace corvane
