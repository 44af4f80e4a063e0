// Keeps the machine awake while sound is recorded, and no longer: a pause is no reason, the end of the joining is.
// Owned by the application, on the main thread.
#pragma once

#include "CorvaneCore/Interfaces/PowerManagement.h"

#include <memory>

namespace corvane {

class RecordingPart;

class KeepAwake final : public QObject {
public:
    // Borrows the recording, which outlives it.
    KeepAwake(RecordingPart& recording, std::shared_ptr<PowerManagement> power);
    ~KeepAwake() override;

private:
    void follow();

    RecordingPart& m_recording;
    std::shared_ptr<PowerManagement> m_power;
};

} // namespace corvane
