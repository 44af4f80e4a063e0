#include "CorvaneCore/Library/AudioImport.h"

#include "CorvaneContract/Text/UserText.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/Library/FileNames.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace corvane {

namespace {

constexpr qint64 blockBytes = 1024 * 1024;

[[noreturn]] void fail(const QString& path, const QString& reason) {
    throw AudioImportError(UserText::tr("%1: %2").arg(lastPathComponent(path), reason));
}

// A write that is cut short, the first sign of a full disk, is followed by one that tells the reason.
bool writeAll(QSaveFile& output, const char* bytes, qint64 size) {
    while (size > 0) {
        const qint64 written = output.write(bytes, size);
        if (written <= 0)
            return false;
        bytes += written;
        size -= written;
    }
    return true;
}

} // namespace

QString uniqueImportedAudioURL(const QString& recordings, const QString& source) {
    const QString extension = pathExtension(source);
    return recordings + QLatin1Char('/') + uuidText(QUuid::createUuid()) + QLatin1Char('.') +
           (extension.isEmpty() ? QStringLiteral("wav") : extension);
}

void copyAudioFile(const QString& source, const QString& target, const std::function<void(double)>& progress) {
    const QFileInfo info(source);
    if (!info.exists())
        fail(source, UserText::tr("No such file or directory"));
    if (!info.isFile())
        fail(source, UserText::tr("Not a file"));
    QFile input(source);
    if (!input.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        fail(source, input.errorString());
    QSaveFile output(target);
    // Unbuffered: the buffer takes a write that is cut short for a success, and the copy would be put in place.
    if (!output.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(target, output.errorString());
    output.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);

    const double total = static_cast<double>(input.size());
    QByteArray block(blockBytes, Qt::Uninitialized);
    for (qint64 copied = 0;;) {
        const qint64 read = input.read(block.data(), block.size());
        if (read < 0)
            fail(source, input.errorString());
        if (read == 0)
            break;
        if (!writeAll(output, block.constData(), read))
            fail(target, output.errorString());
        copied += read;
        if (total > 0)
            progress(static_cast<double>(copied) / total);
    }
    if (!output.commit())
        fail(target, output.errorString());
}

} // namespace corvane
