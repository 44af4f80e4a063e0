// The arithmetic of voice vectors: their stored form, the mean that stands for a person, and how near two of them are.
// Pure; any thread.
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstddef>
#include <span>
#include <vector>

namespace corvane {

// The elements one after the other as 8-byte IEEE-754 doubles, little-endian, without header or count.
[[nodiscard]] QByteArray embeddingData(std::span<const double> vector);
// The reverse. A trailing group of fewer than 8 bytes is dropped.
[[nodiscard]] std::vector<double> vectorFromData(QByteArrayView data);

// The mean of the vectors, divided by its Euclidean norm; a mean of norm 0 stays as it is. The first vector gives the
// dimension, others of another length do not count. Vectors are added one at a time, so that a person with many needs
// the memory of one.
class NormalizedCentroid {
public:
    void add(std::span<const double> vector);
    // The same of a vector in its stored form, without a copy of it.
    void addData(QByteArrayView data);
    // Empty if nothing was added, or an empty vector first.
    [[nodiscard]] std::vector<double> value() const;

private:
    [[nodiscard]] bool takesDimension(std::size_t dimension);

    std::vector<double> m_sum;
    std::size_t m_count = 0;
    bool m_hasDimension = false;
};

// dot(a, b) / (|a| |b|); 0 if the lengths differ, if they are empty, or if a norm is not above 0.
[[nodiscard]] double cosineSimilarity(std::span<const double> a, std::span<const double> b);

} // namespace corvane
