#include "CorvaneCore/Library/MeetingLibrary.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneCore/Jobs/JobReaders.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Library/MeetingMetadata.h"
#include "CorvaneCore/Library/RunIdentity.h"

#include <QSet>

#include <algorithm>

namespace corvane {

namespace {

const QString pendingStatus = QStringLiteral("pending");

FileTime modificationTime(const FileStamp& stamp) {
    return stamp.kind == FileStamp::Kind::missing ? distantPast : stamp.modifiedNanoseconds;
}

template<typename Item>
void sortNewestFirst(std::vector<Item>& items) {
    std::stable_sort(items.begin(), items.end(),
                     [](const Item& a, const Item& b) { return a.modifiedAt > b.modifiedAt; });
}

// What is remembered of one file: a value and the stamp it was read under.
template<typename T>
struct Remembered {
    FileStamp stamp;
    bool settled = false;
    std::optional<T> value;

    [[nodiscard]] bool holds(const FileStamp& now) const { return settled && stamp == now; }

    // The stamp was taken before the file is read, so that a change in between shows in the next stamp. Nothing is
    // remembered of a file that could not be opened: the reason may be a passing one, such as too many open files.
    template<typename Decode>
    void renew(const FileStamp& now, std::int64_t settledBefore, const QString& path, qint64 limit, Decode decode) {
        stamp = now;
        settled = isSettled(now, settledBefore);
        value.reset();
        if (now.kind != FileStamp::Kind::regularFile || now.size > limit)
            return;
        const auto content = readFile(path, limit);
        settled = settled && content;
        try {
            if (content)
                value = decode(*content);
        } catch (const JsonError&) {
            // A damaged document is as good as none, until it changes.
        }
    }
};

MeetingListItem meetingOfRuns(std::vector<RunListItem> runs) {
    sortNewestFirst(runs);
    const RunListItem& newest = runs.front();
    MeetingListItem meeting{.id = newest.meetingID,
                            .title = newest.title,
                            .status = newest.status,
                            .modifiedAt = newest.modifiedAt,
                            .latestRun = newest.url,
                            .audioURL = newest.audioURL,
                            .runURLs = {}};
    meeting.runURLs.reserve(runs.size());
    for (const RunListItem& run : runs)
        meeting.runURLs.push_back(run.url);
    return meeting;
}

} // namespace

// A run as last seen. The transcript and the events are looked at only if a fallback has asked for them.
struct MeetingLibrary::RememberedRun {
    enum File : std::size_t { record, state, transcript, events, fileCount };

    QString runs; // the directory, shared by all
    QString name;
    std::array<QString, fileCount> paths; // relative to `runs`
    Remembered<RunAppMetadata> recordRead;
    Remembered<WorkerJobState> stateRead;
    Remembered<TranscriptIdentity> transcriptRead;
    Remembered<QString> eventAudioRead;
    bool usesTranscript = false;
    bool usesEvents = false;
    bool known = false;
    RunListItem item;

    RememberedRun(const QString& directory, const QString& runName) : runs(directory), name(runName) {
        const QString prefix = runName + QLatin1Char('/');
        paths = {prefix + runAppMetadataFile, prefix + runFiles::jobState, prefix + runFiles::result,
                 prefix + runFiles::events};
        item.id = item.url = runs + QLatin1Char('/') + runName;
    }

    [[nodiscard]] QString path(File file) const { return runs + QLatin1Char('/') + paths[file]; }

    void update(const FileStamp& recordNow, const FileStamp& stateNow, const FileTree& files,
                std::int64_t settledBefore) {
        bool identityHolds = known;
        if (!recordRead.holds(recordNow)) {
            recordRead.renew(recordNow, settledBefore, path(record), maximumDocumentBytes, decodeRunAppMetadata);
            identityHolds = false;
        }
        if (!stateRead.holds(stateNow))
            stateRead.renew(stateNow, settledBefore, path(state), maximumDocumentBytes, decodeWorkerJobState);
        item.status = stateRead.value ? stateRead.value->status : pendingStatus;
        if (usesTranscript || usesEvents) {
            const std::vector<FileStamp> stamps = files.stamps(runs, {paths[transcript], paths[events]});
            identityHolds = identityHolds && (!usesTranscript || transcriptRead.holds(stamps[0])) &&
                            (!usesEvents || eventAudioRead.holds(stamps[1]));
        }
        if (!identityHolds)
            identify(files, settledBefore);
    }

    void identify(const FileTree& files, std::int64_t settledBefore) {
        usesTranscript = usesEvents = false;
        const auto stampOf = [&](File file) { return files.stamps(runs, {paths[file]}).front(); };
        RunIdentity identity(
            item.url, recordRead.value,
            [&] {
                usesTranscript = true;
                if (const FileStamp now = stampOf(transcript); !transcriptRead.holds(now))
                    transcriptRead.renew(
                        now, settledBefore, path(transcript), maximumDocumentBytes,
                        [](const QByteArray& json) { return transcriptIdentity(decodeTranscriptResult(json)); });
                return transcriptRead.value;
            },
            [&] {
                usesEvents = true;
                if (const FileStamp now = stampOf(events); !eventAudioRead.holds(now))
                    eventAudioRead.renew(now, settledBefore, path(events), maximumEventBytes, audioURLOfEvents);
                return eventAudioRead.value;
            });
        item.title = identity.title();
        item.audioURL = identity.audioURL();
        item.meetingID = identity.meetingID();
        known = true;
    }
};

struct MeetingLibrary::RememberedDraft {
    Remembered<MeetingDraftMetadata> draftRead;
};

MeetingLibrary::MeetingLibrary(AppPaths paths, std::shared_ptr<const FileTree> files)
    : m_paths(std::move(paths)), m_files(std::move(files)) {}

MeetingLibrary::~MeetingLibrary() = default;

std::vector<MeetingListItem> MeetingLibrary::scan() {
    const std::vector<RunListItem> runs = scanRuns();
    return meetingList(runs, scanDrafts(runs));
}

std::vector<RunListItem> MeetingLibrary::scanRuns() {
    const QString directory = m_paths.runs();
    const std::vector<QString> names = m_files->list(directory).value_or(std::vector<QString>());
    QHash<QString, std::shared_ptr<RememberedRun>> seen;
    seen.reserve(static_cast<qsizetype>(names.size()));
    std::vector<std::shared_ptr<RememberedRun>> runs;
    runs.reserve(names.size());
    std::vector<QString> paths;
    paths.reserve(names.size() * 3);
    for (const QString& name : names) {
        auto run = m_runs.value(name);
        if (!run)
            run = std::make_shared<RememberedRun>(directory, name);
        paths.insert(paths.end(), {run->name, run->paths[RememberedRun::record], run->paths[RememberedRun::state]});
        seen.insert(run->name, run);
        runs.push_back(std::move(run));
    }
    m_runs = std::move(seen);

    const std::int64_t settledBefore = m_files->settledBefore();
    const std::vector<FileStamp> stamps = m_files->stamps(directory, paths);
    std::vector<RunListItem> items;
    items.reserve(runs.size());
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const FileStamp& itself = stamps[3 * i];
        if (itself.kind != FileStamp::Kind::directory)
            continue;
        RememberedRun& run = *runs[i];
        run.update(stamps[3 * i + 1], stamps[3 * i + 2], *m_files, settledBefore);
        run.item.modifiedAt = modificationTime(itself);
        items.push_back(run.item);
    }
    return items;
}

std::vector<MeetingListItem> MeetingLibrary::scanDrafts(const std::vector<RunListItem>& runs) {
    QSet<QString> named;
    named.reserve(static_cast<qsizetype>(runs.size()));
    for (const RunListItem& run : runs)
        named.insert(run.meetingID);

    const QString directory = m_paths.meetings();
    QHash<QString, std::shared_ptr<RememberedDraft>> seen;
    std::vector<QString> names;
    std::vector<QString> paths;
    for (const QString& name : m_files->list(directory).value_or(std::vector<QString>())) {
        if (named.contains(name))
            continue;
        names.push_back(name);
        paths.push_back(name);
        paths.push_back(name + QLatin1Char('/') + meetingDraftFile);
    }
    const std::int64_t settledBefore = m_files->settledBefore();
    const std::vector<FileStamp> stamps = m_files->stamps(directory, paths);
    std::vector<MeetingListItem> drafts;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (stamps[2 * i].kind != FileStamp::Kind::directory)
            continue;
        const QString url = directory + QLatin1Char('/') + names[i];
        auto remembered = m_drafts.value(names[i]);
        if (!remembered)
            remembered = std::make_shared<RememberedDraft>();
        seen.insert(names[i], remembered);
        Remembered<MeetingDraftMetadata>& read = remembered->draftRead;
        if (!read.holds(stamps[2 * i + 1]))
            read.renew(stamps[2 * i + 1], settledBefore, url + QLatin1Char('/') + meetingDraftFile,
                       maximumDocumentBytes, decodeMeetingDraft);
        if (!read.value)
            continue;
        const QString& audio = read.value->audioPath;
        drafts.push_back({.id = names[i],
                          .title = read.value->title,
                          .status = read.value->recordingStatus,
                          .modifiedAt = modificationTime(stamps[2 * i]),
                          .latestRun = url,
                          .audioURL = audio.isEmpty() ? std::nullopt : std::optional(audio),
                          .runURLs = {}});
    }
    m_drafts = std::move(seen);
    return drafts;
}

std::vector<MeetingListItem> meetingList(const std::vector<RunListItem>& runs,
                                         const std::vector<MeetingListItem>& drafts) {
    QHash<QString, std::size_t> groupOf;
    groupOf.reserve(static_cast<qsizetype>(runs.size()));
    std::vector<std::vector<RunListItem>> groups;
    for (const RunListItem& run : runs) {
        const auto found = groupOf.constFind(run.meetingID);
        if (found == groupOf.constEnd()) {
            groupOf.insert(run.meetingID, groups.size());
            groups.push_back({run});
        } else {
            groups[*found].push_back(run);
        }
    }
    std::vector<MeetingListItem> meetings;
    meetings.reserve(groups.size() + drafts.size());
    for (auto& group : groups)
        meetings.push_back(meetingOfRuns(std::move(group)));
    for (const MeetingListItem& draft : drafts) {
        if (!groupOf.contains(draft.id))
            meetings.push_back(draft);
    }
    sortNewestFirst(meetings);
    return meetings;
}

LatestRecording latestRecording(const QString& recordings, const FileTree& files) {
    const auto names = files.list(recordings);
    if (!names)
        return {};
    LatestRecording latest{.listed = true, .path = std::nullopt};
    FileTime newest = distantPast;
    const std::vector<FileStamp> stamps = files.stamps(recordings, *names);
    for (std::size_t i = 0; i < names->size(); ++i) {
        if (pathExtension((*names)[i]).compare(QLatin1String("wav"), Qt::CaseInsensitive) != 0)
            continue;
        if (!latest.path || newest < modificationTime(stamps[i])) {
            latest.path = recordings + QLatin1Char('/') + (*names)[i];
            newest = modificationTime(stamps[i]);
        }
    }
    return latest;
}

} // namespace corvane
