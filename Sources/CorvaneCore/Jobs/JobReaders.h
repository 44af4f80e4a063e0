// Readers of what a worker leaves in its run directory. Stateless and tolerant: whatever is wrong with a file, it is as
// if it were not there. They race with a worker that writes at the same time, and may be called from any thread.
#pragma once

#include "CorvaneContract/Jobs/WorkerJobEvent.h"
#include "CorvaneContract/Jobs/WorkerJobState.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace corvane {

class FileTree;

class JobStateReader {
public:
    [[nodiscard]] std::optional<WorkerJobState> read(const QString& runDirectory) const;

    // The directory inside `directory` that was modified last, hidden ones left out; among equal times the one that
    // the listing gave first. A link to a directory counts. Nothing if there is none.
    [[nodiscard]] std::optional<QString> latestRun(const QString& directory, const FileTree& files) const;
};

// Ten hours of a talkative worker stay below a tenth of this.
inline constexpr qint64 maximumEventBytes = 32LL * 1024 * 1024;

class JobEventReader {
public:
    enum class Next { goOn, stop };

    // All well-formed lines in file order.
    [[nodiscard]] std::vector<WorkerJobEvent> read(const QString& runDirectory) const;

    // The same one by one, so that a long file needs no memory of its own size in decoded form.
    void forEach(const QString& runDirectory, const std::function<Next(const WorkerJobEvent&)>& visit) const;
    // The same of a file's content.
    static void forEachOf(const QByteArray& content, const std::function<Next(const WorkerJobEvent&)>& visit);
};

} // namespace corvane
