// The list of meetings, found by looking at the data directory and nothing else. A meeting is the group of runs that
// name it or, as long as it has none, a draft. Owned by the library part of the model; main thread.
#pragma once

#include "CorvaneCore/Interfaces/FileTree.h"
#include "CorvaneCore/Library/AppPaths.h"

#include <QDateTime>
#include <QHash>
#include <QString>

#include <array>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace corvane {

// A time of modification, nanoseconds since 1970-01-01 UTC, and what stands for a time that cannot be read.
using FileTime = std::int64_t;
inline constexpr FileTime distantPast = std::numeric_limits<FileTime>::min();

struct RunListItem {
    QString id;  // the run directory's path
    QString url; // the same
    QString title;
    QString status; // as job_state.json has it, or "pending"
    FileTime modifiedAt = distantPast;
    std::optional<QString> audioURL;
    QString meetingID;

    friend bool operator==(const RunListItem&, const RunListItem&) = default;
};

struct MeetingListItem {
    QString id;
    QString title;
    QString status; // of the newest run; of a draft its recording status
    FileTime modifiedAt = distantPast;
    QString latestRun; // directory of the newest run; of a draft its own directory
    std::optional<QString> audioURL;
    std::vector<QString> runURLs; // newest first; empty for a draft

    [[nodiscard]] bool isDraft() const { return runURLs.empty(); }
    friend bool operator==(const MeetingListItem&, const MeetingListItem&) = default;
};

// Groups runs by meeting, adds the drafts that no run names, and sorts all by time, newest first. Sorts are stable.
[[nodiscard]] std::vector<MeetingListItem> meetingList(const std::vector<RunListItem>& runs,
                                                       const std::vector<MeetingListItem>& drafts);

// Looks at the disk at each scan. A document is read again whenever its stamp has changed or was too young to be
// trusted, so that every edit shows at the next scan; what a stamp proves unchanged is remembered.
class MeetingLibrary {
public:
    MeetingLibrary(AppPaths paths, std::shared_ptr<const FileTree> files);
    ~MeetingLibrary();

    [[nodiscard]] std::vector<MeetingListItem> scan();

private:
    struct RememberedRun;
    struct RememberedDraft;

    [[nodiscard]] std::vector<RunListItem> scanRuns();
    [[nodiscard]] std::vector<MeetingListItem> scanDrafts(const std::vector<RunListItem>& runs);

    AppPaths m_paths;
    std::shared_ptr<const FileTree> m_files;
    QHash<QString, std::shared_ptr<RememberedRun>> m_runs;     // by name in `runs`
    QHash<QString, std::shared_ptr<RememberedDraft>> m_drafts; // by name in `meetings`
};

// The newest file in `recordings` with the extension "wav" in any letter case; among equal times the first listed.
// `listed` is false if the directory cannot be listed.
struct LatestRecording {
    bool listed = false;
    std::optional<QString> path;
};
[[nodiscard]] LatestRecording latestRecording(const QString& recordings, const FileTree& files);

} // namespace corvane
