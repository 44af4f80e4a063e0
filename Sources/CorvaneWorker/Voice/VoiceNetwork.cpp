#include "CorvaneWorker/Voice/VoiceNetwork.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>

namespace corvane {

namespace {

using Index = Eigen::Index;

[[noreturn]] void failShape() {
    throw ModelError(QStringLiteral("the network is of another shape than this program knows"));
}

// The offsets of "Append(Offset(a, -2), a, Offset(a, 2))", or the one of "a".
std::vector<Index> offsetsOf(const std::string& descriptor) {
    const QString text = QString::fromStdString(descriptor);
    if (!text.startsWith(QLatin1String("Append(")))
        return {0};
    static const QRegularExpression part(QStringLiteral(R"(Offset\([^,()]+, (-?\d+)\)|[^,() ]+)"));
    std::vector<Index> offsets;
    for (auto match = part.globalMatch(text.mid(7)); match.hasNext();)
        offsets.push_back(match.next().captured(1).toInt());
    return offsets;
}

const Eigen::MatrixXf& matrixOf(const KaldiComponent& component, const char* name) {
    const auto found = component.matrices.find(name);
    if (found == component.matrices.end() || found->second.size() == 0)
        failShape();
    return found->second;
}

float numberOf(const KaldiComponent& component, const char* name) {
    const auto found = component.numbers.find(name);
    if (found == component.numbers.end())
        failShape();
    return found->second;
}

// What a batch normalisation does to each number in the end: times `scale`, plus `offset`.
struct Scaling {
    Eigen::VectorXf scale;
    Eigen::VectorXf offset;
};

Scaling scalingOf(const KaldiComponent& component) {
    const Eigen::VectorXf mean = matrixOf(component, "StatsMean");
    const Eigen::VectorXf variance = matrixOf(component, "StatsVar");
    if (mean.size() != variance.size() || variance.minCoeff() < 0.0F)
        failShape();
    const Eigen::VectorXf scale =
        numberOf(component, "TargetRms") / (variance.array() + numberOf(component, "Epsilon")).sqrt();
    return {scale, -mean.cwiseProduct(scale)};
}

// Columns side by side become matrices of their own, ready to be multiplied from the right.
std::vector<Eigen::MatrixXf> splitWeights(const Eigen::MatrixXf& weights, Index parts) {
    const Index width = weights.cols() / parts;
    std::vector<Eigen::MatrixXf> split;
    split.reserve(static_cast<std::size_t>(parts));
    for (Index part = 0; part < parts; ++part)
        split.emplace_back(weights.middleCols(part * width, width).transpose());
    return split;
}

// The first `shifted` of the inputs have the offset, all have the scale.
void foldIn(const Scaling& scaling, std::vector<Eigen::MatrixXf>& weights, std::size_t shifted,
            Eigen::RowVectorXf& bias) {
    for (std::size_t part = 0; part < weights.size(); ++part) {
        if (part < shifted)
            bias += scaling.offset.transpose() * weights[part];
        weights[part] = scaling.scale.asDiagonal() * weights[part];
    }
}

} // namespace

// Each normalisation is folded into the layer behind it.
VoiceNetwork::VoiceNetwork(const KaldiNetwork& network) {
    std::optional<Scaling> before;
    bool isPooled = false;
    for (const KaldiNode& node : network.nodes) {
        const auto found = network.components.find(node.component);
        if (found == network.components.end())
            continue;
        const KaldiComponent& component = found->second;
        if (component.type == "BatchNormComponent")
            before = scalingOf(component);
        isPooled = isPooled || component.type == "StatisticsPoolingComponent";
        if (!component.type.ends_with("AffineComponent"))
            continue;
        const Eigen::MatrixXf& weights = matrixOf(component, "LinearParams");
        Layer layer{isPooled ? std::vector<Index>{0, 0} : offsetsOf(node.input),
                    {},
                    matrixOf(component, "BiasParams").transpose()};
        const auto parts = static_cast<Index>(layer.offsets.size());
        const Index width = weights.cols() / parts;
        if (weights.rows() != layer.bias.size() || weights.cols() != parts * width ||
            (before && before->scale.size() != width) || (!before && width != telephoneCepstra))
            failShape();
        layer.weights = splitWeights(weights, parts);
        if (before) // The deviation, which comes second where frames are pooled, has no offset.
            foldIn(*before, layer.weights, isPooled ? 1 : layer.weights.size(), layer.bias);
        if (isPooled) {
            m_last = layer;
            return;
        }
        m_reach += std::max(-layer.offsets.front(), layer.offsets.back());
        m_layers.push_back(layer);
    }
    failShape();
}

FrameMatrix VoiceNetwork::frameOutputs(const FrameMatrix& features) const {
    FrameMatrix values = features;
    for (const Layer& layer : m_layers) {
        const Index before = std::max(-layer.offsets.front(), layer.offsets.back());
        const Index count = values.rows() - 2 * before;
        if (count <= 0)
            return FrameMatrix(0, m_layers.back().bias.size());
        FrameMatrix sums = layer.bias.replicate(count, 1);
        for (std::size_t part = 0; part < layer.offsets.size(); ++part)
            sums.noalias() += values.middleRows(before + layer.offsets[part], count) * layer.weights[part];
        values = sums.cwiseMax(0.0F);
    }
    return values;
}

FrameMatrix VoiceNetwork::vectors(const FrameMatrix& means, const FrameMatrix& deviations) const {
    FrameMatrix result = m_last.bias.replicate(means.rows(), 1);
    result.noalias() += means * m_last.weights[0];
    result.noalias() += deviations * m_last.weights[1];
    return result;
}

} // namespace corvane
