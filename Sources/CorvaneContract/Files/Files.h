// Whole-file reading and writing as every document of this house needs it. Thread-safe; blocking.
#pragma once

#include "CorvaneContract/Error.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace corvane {

// text() is “name: reason”, for example “metadata.json: No space left on device”.
class FileError : public Error {
public:
    using Error::Error;
};

// No document that an honest program writes comes near this size; one that does is treated like any damaged file, so
// that it can neither fill the memory nor hold up the main loop.
inline constexpr qint64 maximumDocumentBytes = 64LL * 1024 * 1024;

// The content of a regular file. Nothing if it is missing, unreadable, larger than the limit or anything other than a
// regular file: opening a FIFO or a device never blocks.
[[nodiscard]] std::optional<QByteArray> readFile(const QString& path, qint64 maximumBytes = maximumDocumentBytes);

// The same as text, nothing if it is not valid UTF-8.
[[nodiscard]] std::optional<QString> readTextFile(const QString& path, qint64 maximumBytes = maximumDocumentBytes);

// A reader of `path`, also one after a crash or a power failure, sees the old content or the whole new content: the
// bytes go to a temporary file in the same folder, are flushed to the disk and then replace the target. The file is
// readable and writable by its owner alone. Throws FileError, and then the old content stands.
void writeFileAtomically(const QString& path, const QByteArray& content);

// Puts a finished file in the place of `target`, which is then the whole replacement or, also after a crash or a power
// failure, still what it was. The replacement lies on the same file system and is flushed by whoever wrote it. Throws
// FileError.
void replaceFile(const QString& target, const QString& replacement);

// Creates a directory with its parents, accessible to the owner alone. An existing directory is left as it is.
// Throws FileError.
void createPrivateDirectory(const QString& path);

} // namespace corvane
