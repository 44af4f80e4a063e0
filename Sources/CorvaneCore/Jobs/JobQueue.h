// Turns an audio file and settings into a running worker with a fresh run directory. It keeps no queue: it starts one
// process at once and forgets it. From then on the run directory is the only connection. Made for a single launch;
// main thread.
#pragma once

#include "CorvaneCore/Interfaces/ProcessLauncher.h"
#include "CorvaneCore/Jobs/WorkerCommandBuilder.h"
#include "CorvaneCore/Library/AppPaths.h"

#include <QUuid>

#include <memory>

namespace corvane {

struct ProcessingRun {
    std::shared_ptr<LaunchedProcess> process;
    QString runDirectory;
};

struct LaunchOrder {
    QString audio;
    QUuid recordingID; // names the run directory
    ProcessingSettings settings;
    QString backend = QStringLiteral("whispermlx");
    ProcessEnvironment environment;
};

class JobQueue {
public:
    JobQueue(AppPaths paths, WorkerCommandBuilder worker, std::shared_ptr<ProcessLauncher> launcher);

    // `runs/<recordingID>`, created if needed. Throws FileError.
    [[nodiscard]] QString makeRunDirectory(const QUuid& recordingID) const;

    // Throws FileError or LaunchError. No step undoes an earlier one: a launch that throws leaves the run directory
    // with what was written so far.
    [[nodiscard]] ProcessingRun launch(const LaunchOrder& order) const;

private:
    AppPaths m_paths;
    WorkerCommandBuilder m_worker;
    std::shared_ptr<ProcessLauncher> m_launcher;
};

// The texts of the documents that a launch writes. They are put together by hand with the little escaping that is
// told, and nothing else: an odd name may make them unreadable until the worker and the model replace them.
[[nodiscard]] QByteArray launchStateText(const QString& workerPath);
[[nodiscard]] QByteArray launchMetadataText(const QString& audio); // escapes double quotes only
[[nodiscard]] QByteArray workerExitStateText(std::int32_t status);

} // namespace corvane
