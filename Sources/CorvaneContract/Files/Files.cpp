#include "CorvaneContract/Files/Files.h"

#include "CorvaneContract/Text/UserText.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace corvane {

namespace {

[[noreturn]] void fail(const QString& path, const QString& reason) {
    throw FileError(UserText::tr("%1: %2").arg(QFileInfo(path).fileName(), reason));
}

// An errno, 0 if everything was written.
int writeAll(int fd, const QByteArray& content) {
    for (qsizetype written = 0; written < content.size();) {
        const ssize_t count = ::write(fd, content.constData() + written, static_cast<size_t>(content.size() - written));
        if (count < 0 && errno != EINTR)
            return errno;
        written += std::max<ssize_t>(count, 0);
    }
    return 0;
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

// By system calls and not by QSaveFile, which in Qt 6.4 takes a short write, the first sign of a full disk, for success
// and puts the file cut short in the place of the whole one.
void writeFileAtomically(const QString& path, const QByteArray& content) {
    if (path.contains(QChar(0)))
        fail(path, UserText::tr("Invalid argument"));
    // The target of a link is replaced, not the link.
    const QFileInfo info(path);
    const QByteArray target = QFile::encodeName(info.isSymLink() && info.exists() ? info.canonicalFilePath() : path);
    QByteArray temporary = target + ".XXXXXX";
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC); // readable and writable by the owner alone
    if (fd < 0)
        fail(path, qt_error_string(errno));
    int error = writeAll(fd, content);
    if (error == 0 && ::fdatasync(fd) != 0)
        error = errno;
    // Some network file systems tell of a full disk only now.
    if (::close(fd) != 0 && error == 0)
        error = errno;
    if (error == 0 && ::rename(temporary.constData(), target.constData()) != 0)
        error = errno;
    if (error == 0)
        return;
    ::unlink(temporary.constData());
    fail(path, qt_error_string(error));
}

void replaceFile(const QString& target, const QString& replacement) {
    if (::rename(QFile::encodeName(replacement).constData(), QFile::encodeName(target).constData()) != 0)
        fail(target, qt_error_string(errno));
    const QByteArray folder = QFile::encodeName(QFileInfo(target).absolutePath());
    const int fd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return; // in place all the same, and on the disk a little later
    ::fsync(fd);
    ::close(fd);
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
        fail(path, UserText::tr("Not a directory"));
}

} // namespace corvane
