#include "CorvaneCore/Jobs/JobQueue.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/Library/FileNames.h"

#include <QFile>
#include <QFileInfo>

namespace corvane {

namespace {

// The one device that is asked for; a worker that has none of the kind uses what it has.
const QString workerDevice = QStringLiteral("mps");

void createEmptyFile(const QString& path) {
    // A failure shows when the launcher opens the file.
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

void writeLaunchState(const QString& runDirectory, const QString& worker) {
    createEmptyFile(runFiles::in(runDirectory, runFiles::standardOutputLog));
    createEmptyFile(runFiles::in(runDirectory, runFiles::standardErrorLog));
    writeFileAtomically(runFiles::in(runDirectory, runFiles::jobState), launchStateText(worker));
}

// Never overwrites: a worker's own last word stands, however it ended.
void noteTermination(const QString& runDirectory, std::int32_t status) {
    const QString state = runFiles::in(runDirectory, runFiles::jobState);
    if (status == 0 || QFileInfo::exists(state))
        return;
    try {
        writeFileAtomically(state, workerExitStateText(status));
    } catch (const FileError&) {
        // The run directory is gone or the disk is full; there is nobody left to tell.
    }
}

QByteArray stateText(const char* status, const QString& message) {
    return QByteArray("{\n  \"status\": \"") + status + "\",\n  \"message\": \"" + message.toUtf8() +
           "\",\n  \"progress\": 0.0,\n  \"outputs\": {}\n}";
}

} // namespace

QByteArray launchStateText(const QString& workerPath) {
    return stateText("running", QStringLiteral("worker launch requested: ") + workerPath);
}

QByteArray launchMetadataText(const QString& audio) {
    const auto escaped = [](QString text) { return text.replace(QLatin1Char('"'), QLatin1String("\\\"")).toUtf8(); };
    return QByteArray("{\n  \"title\": \"") + escaped(fileTitle(audio)) + "\",\n  \"audio_path\": \"" + escaped(audio) +
           "\"\n}";
}

QByteArray workerExitStateText(std::int32_t status) {
    return stateText("failed", QStringLiteral("worker exited with status %1; see worker.stderr.log").arg(status));
}

JobQueue::JobQueue(AppPaths paths, WorkerCommandBuilder worker, std::shared_ptr<ProcessLauncher> launcher)
    : m_paths(std::move(paths)), m_worker(std::move(worker)), m_launcher(std::move(launcher)) {}

QString JobQueue::makeRunDirectory(const QUuid& recordingID) const {
    m_paths.createDirectories();
    QString directory = m_paths.runs() + QLatin1Char('/') + uuidText(recordingID);
    createPrivateDirectory(directory);
    return directory;
}

ProcessingRun JobQueue::launch(const LaunchOrder& order) const {
    const QString runDirectory = makeRunDirectory(order.recordingID);
    writeLaunchState(runDirectory, m_worker.executable);
    writeFileAtomically(runDirectory + QLatin1Char('/') + runAppMetadataFile, launchMetadataText(order.audio));

    const ProcessingSettings& settings = order.settings;
    ProcessRequest request;
    request.executable = m_worker.executable;
    request.arguments = m_worker.processArguments({.audio = order.audio,
                                                   .runDirectory = runDirectory,
                                                   .numSpeakers = settings.speakerCount,
                                                   .diarizationEnabled = settings.diarizationEnabled,
                                                   .speakerCountMode = settings.speakerCountMode,
                                                   .minSpeakers = settings.minSpeakerCount,
                                                   .maxSpeakers = settings.maxSpeakerCount,
                                                   .device = workerDevice,
                                                   .backend = order.backend,
                                                   .language = settings.language});
    request.environment = order.environment;
    request.standardOutput = runFiles::in(runDirectory, runFiles::standardOutputLog);
    request.standardError = runFiles::in(runDirectory, runFiles::standardErrorLog);
    auto process =
        m_launcher->launch(request, [runDirectory](std::int32_t status) { noteTermination(runDirectory, status); });
    return {.process = std::move(process), .runDirectory = runDirectory};
}

} // namespace corvane
