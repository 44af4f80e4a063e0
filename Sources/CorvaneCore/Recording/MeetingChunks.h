// Which chunk files belong to a meeting. The directory is what makes recovery work: the file that was open when a
// process died never reached the list in the draft, but it lies there. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/FileTree.h"
#include "CorvaneCore/Library/MeetingMetadata.h"

#include <QString>

#include <optional>
#include <vector>

namespace corvane {

// The draft's chunks and what lies in its directory of chunks, as far as it exists, each once, by name.
[[nodiscard]] std::vector<QString> chunkURLs(const MeetingDraftMetadata& draft, const FileTree& files);

// What lies in the sibling `system-chunks`, by name. No document keeps a list of these.
[[nodiscard]] std::vector<QString> systemChunkURLs(const MeetingDraftMetadata& draft, const FileTree& files);

// A meeting that was renamed while it was recorded, or while it waited for recovery, has a draft that names no
// directory of chunks. If its process died before there was a finished file, this is the directory, with at least one
// chunk in it.
[[nodiscard]] std::optional<QString> forgottenChunksDirectory(const MeetingDraftMetadata& draft,
                                                              const QString& meetingDirectory, const FileTree& files);

// One more than the largest number among the names; names that are no numbers do not count.
[[nodiscard]] qint64 nextChunkIndex(const std::vector<QString>& chunks);

} // namespace corvane
