// Keeps two processes from recording or finishing one meeting at the same time: a lock file in the meeting's directory,
// held from the start of a recording until it is finished. Of a process that has died it counts no more. Owned by the
// model; main thread.
#pragma once

#include "CorvaneContract/Error.h"

#include <QLockFile>
#include <QString>

namespace corvane {

class RecordingLockError : public Error {
public:
    using Error::Error;
};

class RecordingLock {
public:
    // Takes the lock, waiting for a moment in case another process only looks. Throws RecordingLockError.
    explicit RecordingLock(const QString& meetingDirectory);

    [[nodiscard]] const QString& meetingDirectory() const { return m_meetingDirectory; }

    // Whether a living process, also this one, holds the lock of a meeting.
    [[nodiscard]] static bool isHeld(const QString& meetingDirectory);

private:
    QString m_meetingDirectory;
    QLockFile m_lock;
};

} // namespace corvane
