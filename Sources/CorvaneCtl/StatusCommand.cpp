// corvanectl status
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCore/Concurrency/Background.h"
#include "CorvaneCore/Jobs/JobReaders.h"
#include "CorvaneCore/Jobs/WorkerLocator.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/FinishRecording.h"
#include "CorvaneCtl/MeetingChoice.h"
#include "CorvaneCtl/MeetingJson.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <algorithm>

namespace corvane::ctl {

namespace {

struct RunningJob {
    MeetingListItem meeting;
    QString shortID;
    QString run;
    WorkerJobState state;
    std::optional<QDateTime> lastChange; // of the files that a worker at work keeps writing to
};

struct TokenStore {
    std::optional<QString> error; // none: it answered
    bool hasToken = false;
};

std::vector<RunningJob> runningJobs(Session& session) {
    const std::vector<MeetingListItem>& meetings = session.model().library().meetings();
    const std::vector<QString> ids = shortIDs(meetings);
    const FileTree& files = *session.services().files;
    std::vector<RunningJob> jobs;
    for (std::size_t i = 0; i < meetings.size(); ++i) {
        for (const QString& run : meetings[i].runURLs) {
            const auto state = JobStateReader().read(run);
            if (!state || state->status != jobStatus::running)
                continue;
            RunningJob job{meetings[i], ids[i], run, *state, std::nullopt};
            for (const FileStamp& stamp : files.stamps(run, {runFiles::jobState, runFiles::events})) {
                if (stamp.kind == FileStamp::Kind::regularFile)
                    job.lastChange = std::max(job.lastChange, std::optional(stamp.modifiedAt()));
            }
            jobs.push_back(job);
        }
    }
    return jobs;
}

TokenStore askTokenStore(Session& session) {
    // Beside the main loop: the store may take seconds to answer.
    const auto store = session.services().tokenStore;
    return session.wait(inBackground([store]() -> TokenStore {
        try {
            return {std::nullopt, store->hasHuggingFaceToken()};
        } catch (const TokenStoreError& error) {
            return {error.text(), false};
        }
    }));
}

QJsonObject jobJson(const RunningJob& job) {
    return {{QStringLiteral("meeting"), job.meeting.id},
            {QStringLiteral("title"), job.meeting.title},
            {QStringLiteral("run"), job.run},
            {QStringLiteral("progress"), job.state.progress},
            {QStringLiteral("message"), job.state.message},
            {QStringLiteral("lastChange"),
             job.lastChange ? QJsonValue(job.lastChange->toString(Qt::ISODateWithMs)) : QJsonValue()}};
}

QJsonArray recordingsJson(const std::vector<MeetingListItem>& meetings) {
    return encodeArray(meetings, [](const MeetingListItem& meeting) {
        return QJsonObject{{QStringLiteral("meeting"), meeting.id}, {QStringLiteral("title"), meeting.title}};
    });
}

// The lines below the number of such meetings.
QString recordingsText(const QString& heading, const std::vector<MeetingListItem>& meetings) {
    if (meetings.empty())
        return {};
    std::vector<QStringList> rows;
    rows.reserve(meetings.size());
    for (const MeetingListItem& meeting : meetings)
        rows.push_back({QStringLiteral("  ") + visibleText(meeting.id), visibleText(meeting.title)});
    return heading + QLatin1Char('\n') + tableText(rows);
}

QJsonObject statusJson(Session& session, const std::vector<RunningJob>& jobs, const UnfinishedRecordings& unfinished,
                       const std::optional<QString>& worker, const TokenStore& store) {
    QJsonArray running;
    for (const RunningJob& job : jobs)
        running.append(jobJson(job));
    return {{QStringLiteral("dataDirectory"), session.model().paths().root},
            {QStringLiteral("meetings"), static_cast<qint64>(session.model().library().meetings().size())},
            {QStringLiteral("running"), running},
            {QStringLiteral("recording"), recordingsJson(unfinished.live)},
            {QStringLiteral("recoverable"), recordingsJson(unfinished.left)},
            {QStringLiteral("worker"), textOrNull(worker)},
            {QStringLiteral("tokenStore"), QJsonObject{{QStringLiteral("reachable"), !store.error},
                                                       {QStringLiteral("error"), textOrNull(store.error)},
                                                       {QStringLiteral("huggingFaceToken"), store.hasToken}}}};
}

QString tokenStoreText(const TokenStore& store) {
    if (store.error)
        return QStringLiteral("not reachable: ") + visibleText(*store.error);
    return store.hasToken ? QStringLiteral("reachable, holds a Hugging Face token")
                          : QStringLiteral("reachable, holds no Hugging Face token");
}

QString runningText(const std::vector<RunningJob>& jobs, const QDateTime& now) {
    std::vector<QStringList> rows;
    for (const RunningJob& job : jobs) {
        const double age = job.lastChange ? static_cast<double>(job.lastChange->msecsTo(now)) / 1000.0 : 0;
        rows.push_back({QStringLiteral("  ") + visibleText(job.shortID),
                        QStringLiteral("%1 %").arg(static_cast<int>(std::clamp(job.state.progress, 0.0, 1.0) * 100)),
                        QStringLiteral("last change %1 ago").arg(ageText(age)), visibleText(job.meeting.title),
                        visibleText(job.state.message)});
    }
    return tableText(rows);
}

} // namespace

ExitStatus runStatus(Session& session) {
    const AppServices& services = session.services();
    const auto worker =
        WorkerLocator{services.environment, services.currentDirectory, services.bundleResourceDirectory}.resolve();
    const std::vector<RunningJob> jobs = runningJobs(session);
    const UnfinishedRecordings unfinished = unfinishedRecordings(session);
    const TokenStore store = askTokenStore(session);
    if (session.wantsJson()) {
        session.printJson(statusJson(session, jobs, unfinished, worker, store));
        return ExitStatus::ok;
    }
    const auto meetings = session.model().library().meetings().size();
    QString text = tableText(
        {{QStringLiteral("Data directory"), visibleText(session.model().paths().root)},
         {QStringLiteral("Meetings"), QString::number(meetings)},
         {QStringLiteral("Worker"), worker ? visibleText(*worker) : QStringLiteral("corvane-worker not found")},
         {QStringLiteral("Token store"), tokenStoreText(store)},
         {QStringLiteral("In processing"), jobs.empty() ? QStringLiteral("nothing") : QString::number(jobs.size())}});
    text += runningText(jobs, services.clock->now());
    text += recordingsText(QStringLiteral("Being recorded"), unfinished.live);
    text += recordingsText(QStringLiteral("Left behind; corvanectl recover finishes them"), unfinished.left);
    session.terminal().print(text);
    return ExitStatus::ok;
}

} // namespace corvane::ctl
