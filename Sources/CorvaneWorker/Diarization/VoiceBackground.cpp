#include "CorvaneWorker/Diarization/VoiceBackground.h"

namespace corvane {

namespace {

VoiceBackground readTable() {
    static constexpr float table[] = {
#include "CorvaneWorker/Diarization/VoiceBackgroundTable.inc"
    };
    using Table = Eigen::Map<const Eigen::Matrix<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;
    static_assert(std::size(table) == voiceStatisticsSize * (voiceVectorSize + 1) + voiceVectorSize);
    return {Eigen::Map<const Eigen::RowVectorXf>(table, voiceStatisticsSize),
            Eigen::Map<const Eigen::RowVectorXf>(table + voiceStatisticsSize, voiceVectorSize),
            Table(table + voiceStatisticsSize + voiceVectorSize, voiceStatisticsSize, voiceVectorSize)};
}

} // namespace

const VoiceBackground& voiceBackground() {
    static const VoiceBackground background = readTable();
    return background;
}

} // namespace corvane
