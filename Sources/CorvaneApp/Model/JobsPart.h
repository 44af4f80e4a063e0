// The state and the figures of the run that is shown, as its files tell them.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneCore/Interfaces/AudioFileInspector.h"
#include "CorvaneCore/Interfaces/Clock.h"
#include "CorvaneCore/Interfaces/FileTree.h"
#include "CorvaneCore/Jobs/JobQueue.h"
#include "CorvaneCore/Jobs/RunProgress.h"

#include <memory>
#include <optional>

namespace corvane {

class JobsPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(bool isProcessing READ isProcessing NOTIFY jobStateChanged)

public:
    JobsPart(std::shared_ptr<const FileTree> files, std::shared_ptr<const AudioFileInspector> audioFiles,
             std::shared_ptr<const Clock> clock, QObject* parent = nullptr);

    [[nodiscard]] const std::optional<WorkerJobState>& jobState() const { return m_jobState; }
    [[nodiscard]] const RunProgress& runProgress() const { return m_runProgress; }
    [[nodiscard]] bool isProcessing() const { return m_jobState && m_jobState->status == jobStatus::running; }
    // Between a user's wish to process and the start of the worker, while the token store is asked.
    [[nodiscard]] bool isLaunching() const { return m_isLaunching; }
    // What was launched last in this process, if anything. The model learns of a run from its files alone; a caller
    // that waits for one can see here that its worker has died without a last word.
    [[nodiscard]] const std::optional<ProcessingRun>& lastLaunch() const { return m_lastLaunch; }

    void readJobState(const QString& runDirectory);
    void clearJobState();
    // Works out runProgress from the events, the job state as it was read last, and the length of the audio.
    void updateRunProgress(const QString& runDirectory, const std::optional<QString>& audio);
    void clearRunProgress();
    void setIsLaunching(bool launching);
    void setLastLaunch(ProcessingRun run);

Q_SIGNALS:
    void jobStateChanged();
    void runProgressChanged();
    void isLaunchingChanged();

private:
    [[nodiscard]] std::optional<double> audioDurationSeconds(const QString& audio);

    std::shared_ptr<const FileTree> m_files;
    std::shared_ptr<const AudioFileInspector> m_audioFiles;
    std::shared_ptr<const Clock> m_clock;
    std::optional<WorkerJobState> m_jobState;
    RunProgress m_runProgress;
    bool m_isLaunching = false;
    std::optional<ProcessingRun> m_lastLaunch;

    // A length is worked out once for a file that stays as it is, not at each tick.
    struct MeasuredAudio {
        QString path;
        FileStamp stamp;
        std::optional<double> seconds;
    };
    std::optional<MeasuredAudio> m_measured;
};

} // namespace corvane
