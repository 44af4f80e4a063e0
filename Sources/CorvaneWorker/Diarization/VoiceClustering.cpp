#include "CorvaneWorker/Diarization/VoiceClustering.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace corvane {

namespace {

using Index = Eigen::Index;

constexpr Index mostClusteredRows = 600; // the clustering costs the cube of this
constexpr int directionPasses = 5;
constexpr std::int64_t pauseFrames = 30;
constexpr double presumedPairs = 1.5; // that went by chance, so that two or three windows prove nothing

// The groups of the rows, which are named by rows, as numbers from 0.
std::vector<int> numbered(const std::vector<Index>& groups, const std::vector<Index>& alive) {
    std::vector<int> numbers;
    numbers.reserve(groups.size());
    for (const Index group : groups)
        numbers.push_back(static_cast<int>(std::find(alive.begin(), alive.end(), group) - alive.begin()));
    return numbers;
}

} // namespace

WindowMatrix evenlyChosenRows(const WindowMatrix& vectors) {
    const Index count = std::min(vectors.rows(), mostClusteredRows);
    WindowMatrix chosen(count, vectors.cols());
    for (Index row = 0; row < count; ++row)
        chosen.row(row) = vectors.row(row * vectors.rows() / count);
    return chosen;
}

std::vector<std::vector<int>> clusterByWard(const WindowMatrix& vectors, int most) {
    const Index rows = vectors.rows();
    // Squared distances between the means, weighted so that each is the growth of the spread by that merge.
    Eigen::MatrixXf cost(rows, rows);
    for (Index row = 0; row < rows; ++row)
        cost.col(row) = (vectors.rowwise() - vectors.row(row)).rowwise().squaredNorm() / 2.0F;
    std::vector<Index> alive(static_cast<std::size_t>(rows));
    std::iota(alive.begin(), alive.end(), 0);
    std::vector<float> size(static_cast<std::size_t>(rows), 1.0F);
    std::vector<Index> groups = alive;
    std::vector<std::vector<int>> levels;
    while (true) {
        if (static_cast<int>(alive.size()) <= most)
            levels.push_back(numbered(groups, alive));
        if (alive.size() <= 1)
            break;
        Index first = alive[0];
        Index second = alive[1];
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
        std::replace(groups.begin(), groups.end(), second, first);
    }
    std::reverse(levels.begin(), levels.end());
    return levels;
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

std::vector<int> nearestDirections(const WindowMatrix& unitVectors, const WindowMatrix& directions) {
    const Eigen::MatrixXf cosines = unitVectors * directions.transpose();
    std::vector<int> groups;
    groups.reserve(static_cast<std::size_t>(cosines.rows()));
    for (Index row = 0; row < cosines.rows(); ++row) {
        Index best = 0;
        cosines.row(row).maxCoeff(&best);
        groups.push_back(static_cast<int>(best));
    }
    return groups;
}

WindowMatrix refinedDirections(const WindowMatrix& unitVectors, WindowMatrix means) {
    const auto count = static_cast<int>(means.rows());
    means.rowwise().normalize();
    for (int pass = 0; pass < directionPasses; ++pass) {
        const auto groups = nearestDirections(unitVectors, means);
        const WindowMatrix updated = groupMeans(unitVectors, groups, count);
        // A group that has lost all its rows keeps the direction that it had.
        for (int group = 0; group < count; ++group)
            if (updated.row(group).squaredNorm() > 0.0F)
                means.row(group) = updated.row(group).normalized();
    }
    return means;
}

double groupPersistence(std::span<const FrameRange> windows, std::span<const int> groups, int count) {
    std::vector<double> share(static_cast<std::size_t>(count), 0.0);
    std::vector<double> followed(share);
    std::vector<double> kept(share);
    for (std::size_t window = 0, next = 0; window < windows.size(); ++window) {
        const auto group = static_cast<std::size_t>(groups[window]);
        share[group] += 1.0 / static_cast<double>(windows.size());
        while (next < windows.size() && windows[next].begin < windows[window].end)
            ++next;
        if (next == windows.size() || windows[next].begin - windows[window].end > pauseFrames)
            continue;
        followed[group] += 1.0;
        kept[group] += groups[next] == groups[window] ? 1.0 : 0.0;
    }
    double least = 1.0;
    for (std::size_t group = 0; group < share.size(); ++group) {
        if (share[group] >= 1.0)
            return 0.0;
        const double rate = (kept[group] + presumedPairs * share[group]) / (followed[group] + presumedPairs);
        least = std::min(least, (rate - share[group]) / (1.0 - share[group]));
    }
    return least;
}

} // namespace corvane
