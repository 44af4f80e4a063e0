// Looking at many files cheaply: names in a folder, and a stamp of a file that changes whenever its content does.
// Thread-safe. Nothing here fails: what cannot be looked at is absent.
#pragma once

#include <QDateTime>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

// Two equal stamps of a path mean equal content, provided that the second was taken when the first was settled.
struct FileStamp {
    enum class Kind { missing, regularFile, directory, other };

    Kind kind = Kind::missing; // of what a symbolic link leads to; a dangling or looping link is missing
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;                // bytes
    std::int64_t modifiedNanoseconds = 0; // since 1970-01-01 UTC
    std::int64_t statusNanoseconds = 0;   // last change of content, name or permissions; cannot be set by a program

    friend bool operator==(const FileStamp&, const FileStamp&) = default;

    [[nodiscard]] QDateTime modifiedAt() const {
        return QDateTime::fromMSecsSinceEpoch(modifiedNanoseconds / 1'000'000, Qt::UTC);
    }
};

// Whether a stamp tells everything that happened up to `settledBeforeNanoseconds` (FileTree::settledBefore()). A file
// system that keeps whole seconds, or every second one as FAT does, shows itself by a change time without a fraction:
// such a stamp has to be two seconds older. What is missing is settled. Any thread.
[[nodiscard]] bool isSettled(const FileStamp& stamp, std::int64_t settledBeforeNanoseconds);

class FileTree {
public:
    virtual ~FileTree() = default;

    // The names of a folder's entries in the order of the file system, without hidden ones (a leading full stop).
    // Nothing if it cannot be listed.
    [[nodiscard]] virtual std::optional<std::vector<QString>> list(const QString& directory) const = 0;

    [[nodiscard]] virtual FileStamp stamp(const QString& path) const = 0;

    // Stamps of several paths below one folder, in the order given; cheaper than one call each.
    [[nodiscard]] virtual std::vector<FileStamp> stamps(const QString& directory,
                                                        const std::vector<QString>& relativePaths) const = 0;

    // The time, in nanoseconds since 1970-01-01 UTC, up to which a change would surely have moved a stamp taken now:
    // a file whose stamp is younger may still change without its stamp changing. Taken before the stamp and the content
    // are; see isSettled().
    [[nodiscard]] virtual std::int64_t settledBefore() const = 0;
};

} // namespace corvane
