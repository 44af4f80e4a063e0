#include "CorvaneApp/Model/JobsPart.h"

#include "CorvaneCore/Jobs/JobReaders.h"

namespace corvane {

JobsPart::JobsPart(std::shared_ptr<const FileTree> files, std::shared_ptr<const AudioFileInspector> audioFiles,
                   std::shared_ptr<const Clock> clock, QObject* parent)
    : ModelPart(parent), m_files(std::move(files)), m_audioFiles(std::move(audioFiles)), m_clock(std::move(clock)) {}

void JobsPart::readJobState(const QString& runDirectory) {
    publish(m_jobState, JobStateReader().read(runDirectory), "jobState", &JobsPart::jobStateChanged);
}

void JobsPart::clearJobState() {
    publish(m_jobState, std::optional<WorkerJobState>(), "jobState", &JobsPart::jobStateChanged);
}

void JobsPart::updateRunProgress(const QString& runDirectory, const std::optional<QString>& audio) {
    publish(m_runProgress,
            RunProgress::from(JobEventReader().read(runDirectory), m_jobState,
                              audio ? audioDurationSeconds(*audio) : std::nullopt, m_clock->now()),
            "runProgress", &JobsPart::runProgressChanged);
}

void JobsPart::clearRunProgress() {
    publish(m_runProgress, RunProgress(), "runProgress", &JobsPart::runProgressChanged);
}

void JobsPart::setIsLaunching(bool launching) {
    publish(m_isLaunching, launching, "isLaunching", &JobsPart::isLaunchingChanged);
}

void JobsPart::setLastLaunch(ProcessingRun run) {
    m_lastLaunch = std::move(run);
}

std::optional<double> JobsPart::audioDurationSeconds(const QString& audio) {
    const std::int64_t settledBefore = m_files->settledBefore();
    const FileStamp stamp = m_files->stamp(audio);
    if (m_measured && m_measured->path == audio && m_measured->stamp == stamp)
        return m_measured->seconds;
    const std::optional<double> seconds = m_audioFiles->durationSeconds(audio);
    m_measured.reset();
    if (isSettled(stamp, settledBefore))
        m_measured = MeasuredAudio{audio, stamp, seconds};
    return seconds;
}

} // namespace corvane
