// Tells the application how a run goes: job_state.json and events.jsonl in the run directory. Used by the stages and by
// the thread that waits for signals; every function may be called from any thread. After the run has ended, nothing
// more is written.
#pragma once

#include "CorvaneContract/Jobs/WorkerJobEvent.h"
#include "CorvaneContract/Jobs/WorkerJobState.h"

#include <QString>

#include <chrono>
#include <functional>
#include <mutex>

namespace corvane {

enum class Interruption {
    tooLate,   // the run had ended before
    cancelled, // there is no result
    finished,  // the result is there
};

class RunReporter {
public:
    // Begins a new log in the directory, which exists; what an earlier run logged there is dropped. Neither this nor
    // started(), stage() and recognized() fail: a full disk shows itself where the result is written.
    explicit RunReporter(QString runDirectory);
    ~RunReporter();
    RunReporter(const RunReporter&) = delete;
    RunReporter& operator=(const RunReporter&) = delete;

    void started(const QString& audio);
    // The message shown from here on, and the fraction of the whole run that is done. Fractions only grow.
    void stage(const QString& message, double progress);
    // A stage that nobody sees unless the run ends in it.
    void unseenStage(const QString& name);
    // The fraction of the whole run within a stage; written a few times a second at most.
    void progressed(double progress);
    // The transcribed fraction; an event for every half per cent and for exactly 1.0.
    void recognized(double fraction);
    void event(const QString& type, const JSONValue::Object& details = {});

    // Calls `writeOutputs`, which gives names and paths, then writes the "completed" event and after it the state. A
    // signal cannot come in between. This is a stage by itself. Passes on what writeOutputs throws; throws FileError.
    void complete(const QString& message, const std::function<std::map<QString, QString>()>& writeOutputs);
    // The event and the state of a run that failed, both of which name the stage. Does not fail; does nothing if the
    // run has ended before. Returns whether this call ended it.
    bool failed(const QString& sentence);
    // The same for a run that is asked to end; but after endEarlyBy(), `finish` is called in its place.
    Interruption interrupted();
    // From here on the run can end with what it has: `finish` calls complete(), and is then called on the thread that
    // heard of the interruption.
    void endEarlyBy(std::function<void()> finish);

private:
    bool end(const QString& message, const QString& eventType, JSONValue::Object details);
    void appendEvent(const QString& type, const JSONValue::Object& details);
    void writeState();
    void tryWriteState();

    const QString m_runDirectory;
    std::mutex m_mutex; // guards what follows
    int m_events = -1;
    WorkerJobState m_state;
    QString m_stage; // what is being done
    std::chrono::steady_clock::time_point m_lastWrite;
    double m_reportedRecognition = -1;
    bool m_ended = false;
    std::function<void()> m_endEarly;
};

} // namespace corvane
