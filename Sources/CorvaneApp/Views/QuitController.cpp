#include "CorvaneApp/Views/QuitController.h"

#include "CorvaneApp/Model/AppModel.h"

#include <utility>

namespace corvane {

QuitController::QuitController(AppModel& model, QObject* parent) : QObject(parent), m_model(model) {
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &QuitController::end);
    connect(&m_model.recording(), &RecordingPart::finishingProgressChanged, this, [this] {
        if (m_step != Step::finishing)
            return;
        Q_EMIT changed();
        // A turn later, when the model has taken in what came of it.
        if (!isJoining())
            QMetaObject::invokeMethod(this, &QuitController::finish, Qt::QueuedConnection);
    });
}

bool QuitController::isRecordingActive() const {
    return m_model.recording().recordingState().isActive();
}

bool QuitController::isJoining() const {
    return m_model.recording().finishingProgress().has_value();
}

double QuitController::progress() const {
    return m_model.recording().finishingProgress().value_or(0);
}

void QuitController::enter(Step step) {
    if (m_step == step || m_step == Step::ended)
        return;
    m_step = step;
    Q_EMIT changed();
}

void QuitController::requestQuit() {
    if (m_step == Step::finishing)
        return;
    if (isJoining())
        enter(Step::finishing);
    else if (isRecordingActive())
        enter(Step::asking);
    else
        end();
}

// Not processed: that would keep the machine busy for a user who has left. The meeting offers it.
void QuitController::stopAndQuit() {
    if (m_step == Step::finishing || m_step == Step::ended)
        return;
    enter(Step::finishing);
    if (!isJoining())
        static_cast<void>(m_model.stopRecording(AppModel::AfterStop::leave));
    if (!isJoining())
        finish();
}

void QuitController::finish() {
    if (m_step != Step::finishing || isJoining())
        return;
    if (isRecordingActive() && !m_mustEnd)
        enter(Step::failed);
    else
        end();
}

void QuitController::quitAnyway() {
    end();
}

void QuitController::cancel() {
    if (!m_mustEnd)
        enter(Step::none);
}

void QuitController::endSoon(std::chrono::milliseconds patience) {
    if (std::exchange(m_mustEnd, true)) {
        end();
        return;
    }
    m_model.cancelImports(); // the source is still there
    if (!isRecordingActive() && !isJoining()) {
        end();
        return;
    }
    m_patience.start(patience);
    stopAndQuit();
}

void QuitController::end() {
    if (m_step == Step::ended)
        return;
    enter(Step::ended);
    m_patience.stop();
    m_model.cancelImports();
    Q_EMIT quitWanted();
}

} // namespace corvane
