#include "CorvaneApp/Views/KeepAwake.h"

#include "CorvaneApp/Model/RecordingPart.h"
#include "CorvaneApp/Views/PanelText.h"

namespace corvane {

KeepAwake::KeepAwake(RecordingPart& recording, std::shared_ptr<PowerManagement> power)
    : m_recording(recording), m_power(std::move(power)) {
    connect(&m_recording, &RecordingPart::recordingStateChanged, this, &KeepAwake::follow);
    connect(&m_recording, &RecordingPart::finishingProgressChanged, this, &KeepAwake::follow);
}

KeepAwake::~KeepAwake() {
    m_power->release();
}

void KeepAwake::follow() {
    if (m_recording.recordingState().kind == RecordingState::Kind::recording || m_recording.finishingProgress())
        m_power->keepAwake(PanelText::tr("A meeting is being recorded"));
    else
        m_power->release();
}

} // namespace corvane
