#include "CorvaneWorker/Run/RunReporter.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace corvane {

namespace {

constexpr std::chrono::milliseconds leastPause{300}; // between two states
constexpr double leastRecognitionStep = 0.005;

} // namespace

RunReporter::RunReporter(QString runDirectory) : m_runDirectory(std::move(runDirectory)) {
    const QByteArray path = QFile::encodeName(runFiles::in(m_runDirectory, runFiles::events));
    // Nobody else may have put a FIFO there for this to wait on.
    m_events =
        ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    m_state.status = jobStatus::running;
}

RunReporter::~RunReporter() {
    if (m_events >= 0)
        ::close(m_events);
}

void RunReporter::started(const QString& audio) {
    event(jobEvents::jobStarted, {{QStringLiteral("audio"), audio}});
}

void RunReporter::stage(const QString& message, double progress) {
    const std::lock_guard lock(m_mutex);
    if (m_ended)
        return;
    m_state.message = m_stage = message;
    m_state.progress = std::clamp(progress, m_state.progress, 1.0);
    tryWriteState();
}

void RunReporter::unseenStage(const QString& name) {
    const std::lock_guard lock(m_mutex);
    m_stage = name;
}

void RunReporter::progressed(double progress) {
    const std::lock_guard lock(m_mutex);
    if (m_ended || progress <= m_state.progress)
        return;
    m_state.progress = std::min(progress, 1.0);
    if (std::chrono::steady_clock::now() - m_lastWrite >= leastPause)
        tryWriteState();
}

void RunReporter::recognized(double fraction) {
    const std::lock_guard lock(m_mutex);
    const double step = fraction >= 1.0 ? 0.0 : leastRecognitionStep;
    if (m_ended || fraction <= m_reportedRecognition || fraction - m_reportedRecognition < step)
        return;
    m_reportedRecognition = fraction;
    appendEvent(jobEvents::asrProgress, {{QStringLiteral("progress"), std::min(fraction, 1.0)}});
}

void RunReporter::event(const QString& type, const JSONValue::Object& details) {
    const std::lock_guard lock(m_mutex);
    if (!m_ended)
        appendEvent(type, details);
}

void RunReporter::complete(const QString& message, const std::function<std::map<QString, QString>()>& writeOutputs) {
    const std::lock_guard lock(m_mutex);
    if (m_ended)
        return;
    m_stage = QStringLiteral("Writing the transcript");
    const std::map<QString, QString> outputs = writeOutputs();
    // The application refreshes a last time when the state changes, and then the event has to be there.
    appendEvent(jobEvents::completed, {});
    WorkerJobState before = m_state;
    m_state = {jobStatus::completed, message, 1.0, outputs, {}};
    try {
        writeState();
    } catch (...) {
        m_state = std::move(before);
        throw;
    }
    m_ended = true;
}

bool RunReporter::failed(const QString& sentence) {
    return end(sentence, jobEvents::failed, {{QStringLiteral("error"), sentence}});
}

Interruption RunReporter::interrupted() {
    std::function<void()> finish;
    {
        const std::lock_guard lock(m_mutex);
        finish = m_ended ? nullptr : m_endEarly;
    }
    try {
        if (finish) {
            finish();
            return Interruption::finished;
        }
    } catch (const FileError&) {
        // Then there is no result.
    }
    return end(QStringLiteral("Transcription was interrupted"), jobEvents::cancelled, {}) ? Interruption::cancelled
                                                                                          : Interruption::tooLate;
}

void RunReporter::endEarlyBy(std::function<void()> finish) {
    const std::lock_guard lock(m_mutex);
    m_endEarly = std::move(finish);
}

bool RunReporter::end(const QString& message, const QString& eventType, JSONValue::Object details) {
    const std::lock_guard lock(m_mutex);
    if (m_ended)
        return false;
    m_ended = true;
    if (!m_stage.isEmpty())
        details.emplace(QStringLiteral("stage"), m_stage);
    appendEvent(eventType, details);
    m_state.status = jobStatus::failed;
    m_state.message = message;
    m_state.stage = m_stage;
    tryWriteState();
    return true;
}

void RunReporter::appendEvent(const QString& type, const JSONValue::Object& details) {
    if (m_events < 0)
        return;
    const QByteArray line = encodeWorkerJobEvent(type, QDateTime::currentDateTimeUtc(), details);
    const off_t end = ::lseek(m_events, 0, SEEK_END);
    ssize_t written = 0;
    do {
        written = ::write(m_events, line.constData(), static_cast<std::size_t>(line.size()));
    } while (written < 0 && errno == EINTR);
    // Half a line would swallow the next one.
    if (written >= 0 && written < line.size() && ::ftruncate(m_events, end) != 0)
        ::close(std::exchange(m_events, -1));
}

void RunReporter::writeState() {
    m_lastWrite = std::chrono::steady_clock::now();
    writeFileAtomically(runFiles::in(m_runDirectory, runFiles::jobState), encodeWorkerJobState(m_state));
}

void RunReporter::tryWriteState() {
    try {
        writeState();
    } catch (const FileError&) {
        // The next state may fit, and the result will not be written unseen.
    }
}

} // namespace corvane
