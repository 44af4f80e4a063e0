#include "CorvaneContract/Files/Files.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace corvane {

namespace {

[[noreturn]] void fail(const QString& path, const QString& reason) {
    throw FileError(QStringLiteral("%1: %2").arg(QFileInfo(path).fileName(), reason));
}

} // namespace

std::optional<QByteArray> readFile(const QString& path, qint64 maximumBytes) {
    if (path.contains(QChar(0)))
        return std::nullopt;
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0)
        return std::nullopt;
    QFile file;
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > maximumBytes ||
        !file.open(fd, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        return std::nullopt;
    }
    QByteArray content(status.st_size, Qt::Uninitialized);
    const qint64 read = file.read(content.data(), content.size());
    if (read < 0)
        return std::nullopt;
    content.truncate(read);
    // A file that grows while it is read has more to give, up to the limit.
    while (content.size() <= maximumBytes) {
        const QByteArray more = file.read(qint64{64} * 1024);
        if (more.isEmpty())
            return file.error() == QFileDevice::NoError ? std::optional(content) : std::nullopt;
        content.append(more);
    }
    return std::nullopt;
}

std::optional<QString> readTextFile(const QString& path, qint64 maximumBytes) {
    const auto content = readFile(path, maximumBytes);
    if (!content)
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(*content);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

void writeFileAtomically(const QString& path, const QByteArray& content) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        fail(path, file.errorString());
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    // commit() flushes the temporary file to the disk before it renames it.
    if (file.write(content) != content.size() || !file.commit())
        fail(path, file.errorString());
}

void createPrivateDirectory(const QString& path) {
    const QFileInfo info(path);
    if (info.isDir())
        return;
    const QString parent = info.absolutePath();
    if (parent != path)
        createPrivateDirectory(parent);
    if (::mkdir(QFile::encodeName(path).constData(), S_IRWXU) != 0 && errno != EEXIST)
        fail(path, qt_error_string(errno));
    if (!QFileInfo(path).isDir())
        fail(path, QStringLiteral("Not a directory"));
}

} // namespace corvane
