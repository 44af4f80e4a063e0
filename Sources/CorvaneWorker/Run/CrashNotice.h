// Tells that a run has failed even when the process crashes or exits, as the recognition libraries do on some damaged
// models. Everything is prepared beforehand; the signal handler only writes bytes. One object at a time, on the main
// thread.
#pragma once

#include <QString>

namespace corvane {

class CrashNotice {
public:
    // While this object lives, a crash leaves the sentence and the stage in job_state.json and in a "failed" event, and
    // the sentence on standard error, and ends the process with status 1.
    CrashNotice(const QString& runDirectory, const QString& stage, const QString& sentence);
    ~CrashNotice();
    CrashNotice(const CrashNotice&) = delete;
    CrashNotice& operator=(const CrashNotice&) = delete;
};

} // namespace corvane
