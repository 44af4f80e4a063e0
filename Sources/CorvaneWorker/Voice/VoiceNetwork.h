// The network that turns a stretch of speech into a vector that tells voices apart: layers over frames, the mean and
// the deviation of what they say over the stretch, and one layer behind (an x-vector network). Constant after loading;
// any thread.
#pragma once

#include "CorvaneWorker/Voice/KaldiFiles.h"
#include "CorvaneWorker/Voice/TelephoneFeatures.h"

#include <memory>

namespace corvane {

class VoiceNetwork {
public:
    explicit VoiceNetwork(const KaldiNetwork& network); // throws ModelError

    // How many frames before and behind one the layers look at.
    [[nodiscard]] Eigen::Index reach() const { return m_reach; }

    // What the last layer over frames says of the frames [reach, rows - reach) of `features`.
    [[nodiscard]] FrameMatrix frameOutputs(const FrameMatrix& features) const;

    // One vector per row, from the mean and the deviation of a stretch's frame outputs.
    [[nodiscard]] FrameMatrix vectors(const FrameMatrix& means, const FrameMatrix& deviations) const;

    [[nodiscard]] Eigen::Index vectorSize() const { return m_last.bias.size(); }

private:
    struct Layer {
        std::vector<Eigen::Index> offsets;    // frames that it takes in
        std::vector<Eigen::MatrixXf> weights; // for each of them, inputs by outputs
        Eigen::RowVectorXf bias;
    };

    std::vector<Layer> m_layers; // each with a rectifier behind it
    Layer m_last;                // over the mean and the deviation
    Eigen::Index m_reach = 0;
};

} // namespace corvane
