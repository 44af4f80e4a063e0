#include "CorvaneCore/Recording/RecordingLock.h"

#include "CorvaneContract/Text/UserText.h"

#include <QFile>

namespace corvane {

namespace {

constexpr int patienceMilliseconds = 300;

QString lockPath(const QString& meetingDirectory) {
    return meetingDirectory + QStringLiteral("/recording.lock");
}

} // namespace

RecordingLock::RecordingLock(const QString& meetingDirectory)
    : m_meetingDirectory(meetingDirectory), m_lock(lockPath(meetingDirectory)) {
    m_lock.setStaleLockTime(0); // a recording may take hours; only the death of its process ends it
    if (m_lock.tryLock(patienceMilliseconds))
        return;
    if (m_lock.error() == QLockFile::LockFailedError)
        throw RecordingLockError(UserText::tr("this meeting is being recorded by another process"));
    throw RecordingLockError(
        UserText::tr("%1 cannot be written; the disk may be full").arg(lockPath(meetingDirectory)));
}

bool RecordingLock::isHeld(const QString& meetingDirectory) {
    // Without a file there is nothing to ask, and asking would make one.
    if (!QFile::exists(lockPath(meetingDirectory)))
        return false;
    QLockFile lock(lockPath(meetingDirectory));
    lock.setStaleLockTime(0);
    return !lock.tryLock(0) && lock.error() == QLockFile::LockFailedError;
}

} // namespace corvane
