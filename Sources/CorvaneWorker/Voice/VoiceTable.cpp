#include "CorvaneWorker/Voice/VoiceTable.h"

#include <cmath>

namespace corvane {

namespace {

// The cosine between the freed vectors that divides one voice from two, in the middle of what voice-lab measured on
// people whom the table does not know, and the threshold of the application that it has to become.
constexpr double dividingCosine = 0.71;
constexpr double threshold = 0.82;
constexpr double share = (threshold - dividingCosine) / (1.0 - dividingCosine); // of the constant in the squared length

VoiceTable readTable() {
    static constexpr float numbers[] = {
#include "CorvaneWorker/Voice/VoiceTable.inc"
    };
    static_assert(std::size(numbers) ==
                  networkVectorSize * (1 + voiceDirections + channelDirections) + voiceDirections + channelDirections);
    const float* next = numbers;
    const auto take = [&next](Eigen::Index rows, Eigen::Index columns) {
        using Rows = Eigen::Matrix<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
        Eigen::MatrixXf taken = Eigen::Map<const Rows>(next, rows, columns);
        next += rows * columns;
        return taken;
    };
    VoiceTable table;
    table.mean = take(1, networkVectorSize);
    table.ratios = take(1, voiceDirections);
    table.directions = take(networkVectorSize, voiceDirections);
    table.damping = take(1, channelDirections);
    table.channels = take(networkVectorSize, channelDirections);
    return table;
}

} // namespace

const VoiceTable& voiceTable() {
    static const VoiceTable table = readTable();
    return table;
}

Eigen::RowVectorXd networkVoiceVector(const Eigen::RowVectorXf& mean) {
    const VoiceTable& table = voiceTable();
    const Eigen::RowVectorXf channel = (mean * table.channels).cwiseProduct(table.damping);
    const Eigen::RowVectorXd freed = (mean - channel * table.channels.transpose()).cast<double>().normalized();
    Eigen::RowVectorXd vector(freed.size() + 1);
    vector << std::sqrt(1.0 - share) * freed, std::sqrt(share);
    return vector;
}

} // namespace corvane
