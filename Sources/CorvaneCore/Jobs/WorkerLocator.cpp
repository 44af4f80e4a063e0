#include "CorvaneCore/Jobs/WorkerLocator.h"

#include "CorvaneContract/Jobs/WorkerArguments.h"

#include <QDir>
#include <QFileInfo>

namespace corvane {

namespace {

// QDir::cleanPath() keeps what climbs above the root, where there is nothing but the root itself.
QString standardized(const QString& path) {
    QString clean = QDir::cleanPath(path);
    while (clean.startsWith(QLatin1String("/../")))
        clean.remove(0, 3);
    return clean;
}

} // namespace

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
    // A program that a desktop started has the root as its current directory.
    const QString here = currentDirectory == QLatin1String("/") ? QString() : currentDirectory;
    candidates.append(here + QStringLiteral("/.venv/bin/corvane-worker"));
    candidates.append(here + QStringLiteral("/worker/.venv/bin/corvane-worker"));
    // Only the two that climb are cleaned, so that a reader of a log sees a plain path.
    for (const char* climb : {"/../..", "/../../.."})
        candidates.append(
            standardized(here + QLatin1String(climb) + QStringLiteral("/worker/.venv/bin/corvane-worker")));
    for (const QString& candidate : candidates) {
        if (fileExists(candidate))
            return candidate;
    }
    return std::nullopt;
}

} // namespace corvane
