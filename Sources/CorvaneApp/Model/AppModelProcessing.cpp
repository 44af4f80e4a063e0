// Launching the worker and following the run that is shown.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Error.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Concurrency/Background.h"
#include "CorvaneCore/Jobs/JobReaders.h"
#include "CorvaneCore/Jobs/WorkerEnvironment.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Library/RunIdentity.h"

#include <chrono>

namespace corvane {

using namespace std::chrono_literals;

// What the user wished for, as it stood at that moment, and what was on screen then.
struct AppModel::LaunchWish {
    QString worker;
    LaunchOrder order;
    QString title;
    std::optional<QString> meetingID;
    std::optional<QString> shownRun;
    std::optional<SidebarItem> shownItem;
};

QFuture<std::optional<QString>> AppModel::processCurrentAudio() {
    const auto refused = [] { return QtFuture::makeReadyFuture(std::optional<QString>()); };
    const auto audio = currentAudioURL();
    if (!audio || m_jobs.isLaunching())
        return refused();
    const auto worker = findWorker();
    if (!worker) {
        say(UserText::tr("corvane-worker not found"));
        return refused();
    }
    LaunchWish wish;
    wish.worker = *worker;
    wish.order.audio = *audio;
    wish.order.recordingID = QUuid::createUuid();
    wish.order.settings = m_detail.settings();
    wish.title = m_detail.selectedTitle();
    if (const auto meeting = selectedMeeting())
        wish.meetingID = meeting->id;
    wish.shownRun = m_detail.lastRunDirectory();
    wish.shownItem = m_library.selectedSidebarItem();

    // The token store may take seconds to answer, or not to; the main loop does not wait for it.
    const WorkerEnvironment environment{m_services.tokenStore, m_localModel.useOllamaSpeakerContext()};
    m_jobs.setIsLaunching(true);
    return inBackground([environment] { return environment.values(); })
        .then(this, [this, wish](const ProcessEnvironment& values) {
            m_jobs.setIsLaunching(false);
            return launch(wish, values);
        });
}

std::optional<QString> AppModel::launch(const LaunchWish& wish, const ProcessEnvironment& environment) {
    LaunchOrder order = wish.order;
    order.environment = environment;
    ProcessingRun run;
    try {
        run = JobQueue(m_paths, {wish.worker}, m_services.processes).launch(order);
    } catch (const Error& error) {
        say(UserText::tr("Failed to launch worker: %1").arg(error.text()));
        return std::nullopt;
    }
    const QString runDirectory = run.runDirectory;
    m_jobs.setLastLaunch(std::move(run));

    RunAppMetadata record = readRunAppMetadata(runDirectory).value_or(RunAppMetadata());
    if (!wish.title.isEmpty())
        record.title = wish.title;
    record.meetingID = wish.meetingID ? *wish.meetingID : RunIdentity::ofDirectory(runDirectory).meetingID();
    record.settings = order.settings;
    try {
        writeRunAppMetadata(record, runDirectory);
    } catch (const Error&) {
        // The run goes on with the short record of its launch.
    }

    // A user who has moved on while the token store was asked is not called back.
    if (m_detail.lastRunDirectory() == wish.shownRun && m_library.selectedSidebarItem() == wish.shownItem) {
        m_detail.setLastRunDirectory(runDirectory);
        m_library.setSelectedSidebarItem(SidebarItem::meeting(*record.meetingID));
        m_jobs.readJobState(runDirectory);
        m_detail.clearTranscript();
        resetSpeakerReviewState();
        if (m_detail.selectedTitle().isEmpty())
            m_detail.setSelectedTitle(fileTitle(order.audio));
        say(UserText::tr("Processing %1").arg(lastPathComponent(order.audio)));
        reloadMeetings();
        refreshRun();
    } else {
        reloadMeetings();
    }
    return runDirectory;
}

void AppModel::startPolling() {
    connect(&m_pollTimer, &QTimer::timeout, this, &AppModel::pollTick);
    m_pollTimer.setTimerType(Qt::PreciseTimer);
    m_pollTimer.start(1s);
}

void AppModel::pollTick() {
    reloadMeetings();
    if (m_recording.recordingStartedAt() && m_recording.recordingState().isActive())
        m_recording.updateElapsed();
    if (!m_detail.lastRunDirectory())
        return;
    const auto onDisk = JobStateReader().read(*m_detail.lastRunDirectory());
    // While neither side says "running" the shown meeting is left alone; the refresh after the first other word is
    // the last one of a run and brings in its result.
    if ((onDisk && onDisk->status == jobStatus::running) || isProcessing())
        refreshRun();
}

} // namespace corvane
