#include "CorvaneWorker/Diarization/VoiceClustering.h"

#include <Eigen/Eigenvalues>

#include <algorithm>
#include <limits>
#include <numeric>

namespace corvane {

namespace {

using Index = Eigen::Index;

constexpr int prunings = 12; // how many densities of the affinity are tried

// Each row keeps its `kept` nearest rows as ones; the mean of the matrix and its transpose is symmetric.
Eigen::MatrixXf prunedAffinity(const Eigen::MatrixXf& similarity, Index kept) {
    const Index count = similarity.rows();
    Eigen::MatrixXf affinity = Eigen::MatrixXf::Zero(count, count);
    std::vector<Index> order(static_cast<std::size_t>(count));
    for (Index row = 0; row < count; ++row) {
        std::iota(order.begin(), order.end(), 0);
        std::nth_element(order.begin(), order.begin() + kept - 1, order.end(), [&](Index left, Index right) {
            return similarity(row, left) > similarity(row, right);
        });
        for (Index nearest = 0; nearest < kept; ++nearest)
            affinity(row, order[static_cast<std::size_t>(nearest)]) = 1.0F;
    }
    return (affinity + affinity.transpose()) / 2.0F;
}

struct Eigengap {
    int count = 1;   // of speakers
    float size = 0;  // the largest gap, against the largest eigenvalue
};

Eigengap largestGap(const Eigen::MatrixXf& affinity, const SpeakerLimits& limits) {
    Eigen::MatrixXf laplacian = -affinity;
    laplacian.diagonal().setZero();
    laplacian.diagonal() = -laplacian.rowwise().sum();
    const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXf> solver(laplacian, Eigen::EigenvaluesOnly);
    const auto& values = solver.eigenvalues(); // growing
    Eigengap best;
    best.count = limits.least;
    float largest = -1.0F;
    const int most = std::min(limits.most, static_cast<int>(values.size()) - 1);
    for (int count = limits.least; count <= most; ++count) {
        const float gap = values[count] - values[count - 1];
        if (gap > largest) {
            largest = gap;
            best.count = count;
        }
    }
    best.size = largest / (values[values.size() - 1] + 1e-9F);
    return best;
}

} // namespace

int estimateSpeakerCount(const WindowMatrix& vectors, const SpeakerLimits& limits) {
    const Index rows = vectors.rows();
    const int most = static_cast<int>(std::min<Index>(limits.most, rows));
    const int least = std::min(limits.least, most);
    if (least >= most)
        return std::max(1, least);
    const Eigen::MatrixXf similarity = vectors * vectors.transpose();
    float bestRatio = std::numeric_limits<float>::max();
    int best = least;
    Index previous = 0;
    for (int step = 0; step < prunings; ++step) {
        const Index kept = std::clamp<Index>(2 + rows * (step + 1) / (prunings * 4), 2, rows);
        if (std::exchange(previous, kept) == kept)
            continue;
        const Eigengap gap = largestGap(prunedAffinity(similarity, kept), {least, most});
        const float ratio = static_cast<float>(kept) / static_cast<float>(rows) / (gap.size + 1e-9F);
        if (ratio < bestRatio) {
            bestRatio = ratio;
            best = gap.count;
        }
    }
    return best;
}

std::vector<int> clusterByWard(const WindowMatrix& vectors, int count) {
    const Index rows = vectors.rows();
    // Squared distances between the means, weighted so that each is the growth of the spread by that merge.
    Eigen::MatrixXf cost(rows, rows);
    for (Index row = 0; row < rows; ++row)
        cost.col(row) = (vectors.rowwise() - vectors.row(row)).rowwise().squaredNorm() / 2.0F;
    std::vector<Index> alive(static_cast<std::size_t>(rows));
    std::iota(alive.begin(), alive.end(), 0);
    std::vector<float> size(static_cast<std::size_t>(rows), 1.0F);
    std::vector<int> group(static_cast<std::size_t>(rows));
    std::iota(group.begin(), group.end(), 0);
    while (static_cast<int>(alive.size()) > count) {
        Index first = 0;
        Index second = 0;
        float least = std::numeric_limits<float>::max();
        for (std::size_t right = 1; right < alive.size(); ++right)
            for (std::size_t left = 0; left < right; ++left)
                if (cost(alive[left], alive[right]) < least) {
                    least = cost(alive[left], alive[right]);
                    first = alive[left];
                    second = alive[right];
                }
        const float firstSize = size[static_cast<std::size_t>(first)];
        const float secondSize = size[static_cast<std::size_t>(second)];
        // Lance and Williams' update for Ward's criterion.
        for (const Index other : alive) {
            if (other == first || other == second)
                continue;
            const float otherSize = size[static_cast<std::size_t>(other)];
            const float updated = ((firstSize + otherSize) * cost(first, other) +
                                   (secondSize + otherSize) * cost(second, other) - otherSize * least) /
                                  (firstSize + secondSize + otherSize);
            cost(first, other) = updated;
            cost(other, first) = updated;
        }
        size[static_cast<std::size_t>(first)] += secondSize;
        std::erase(alive, second);
        std::replace(group.begin(), group.end(), static_cast<int>(second), static_cast<int>(first));
    }
    for (int& number : group)
        number = static_cast<int>(std::find(alive.begin(), alive.end(), number) - alive.begin());
    return group;
}

WindowMatrix groupMeans(const WindowMatrix& vectors, std::span<const int> groups, int count) {
    WindowMatrix means = WindowMatrix::Zero(count, vectors.cols());
    Eigen::VectorXf sizes = Eigen::VectorXf::Zero(count);
    for (std::size_t row = 0; row < groups.size(); ++row) {
        means.row(groups[row]) += vectors.row(static_cast<Index>(row));
        sizes[groups[row]] += 1.0F;
    }
    return means.array().colwise() / sizes.array().max(1.0F);
}

} // namespace corvane
