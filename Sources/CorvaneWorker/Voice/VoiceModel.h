// Measures voices with the trained network where it is installed: windows of speech become vectors. Constant after
// loading; any thread.
#pragma once

#include "CorvaneWorker/Audio/SampleStore.h"
#include "CorvaneWorker/Speech/VoiceActivity.h"
#include "CorvaneWorker/Voice/SpeechTimeline.h"
#include "CorvaneWorker/Voice/VoiceNetwork.h"

#include <QString>

#include <functional>
#include <memory>

namespace corvane {

class VoiceModel {
public:
    // Throws ModelError.
    explicit VoiceModel(const QString& directory);

    // One row per window, less what all voices have in common; a row of zeros for a window without speech. Only the
    // speech within a window counts, and the channel is taken away by the mean over three seconds of speech around each
    // frame. `windows` and `speech` are in order. Works on all cores; the result does not depend on their number.
    [[nodiscard]] FrameMatrix measure(const SampleStore& samples, std::span<const FrameRange> speech,
                                      std::span<const FrameRange> windows,
                                      const std::function<void(double)>& progress) const;

private:
    [[nodiscard]] FrameMatrix measureBlock(const SampleStore& samples, const SpeechTimeline& timeline, FrameRange block,
                                           std::span<const FrameRange> parts) const;

    TelephoneFeatures m_features;
    VoiceNetwork m_network;
    Eigen::RowVectorXf m_mean;
};

struct InstalledVoiceModel {
    std::unique_ptr<const VoiceModel> model; // null if it is not installed or is damaged
    QString note;                            // then why, one sentence for the log
};

// Loads it at the first call.
[[nodiscard]] const InstalledVoiceModel& installedVoiceModel();

} // namespace corvane
