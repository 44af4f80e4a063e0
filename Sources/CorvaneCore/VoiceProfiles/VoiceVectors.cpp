#include "CorvaneCore/VoiceProfiles/VoiceVectors.h"

#include <QtEndian>

#include <cmath>

namespace corvane {

QByteArray embeddingData(std::span<const double> vector) {
    QByteArray data(static_cast<qsizetype>(vector.size_bytes()), Qt::Uninitialized);
    qToLittleEndian<double>(vector.data(), static_cast<qsizetype>(vector.size()), data.data());
    return data;
}

std::vector<double> vectorFromData(QByteArrayView data) {
    std::vector<double> vector(static_cast<std::size_t>(data.size()) / sizeof(double));
    qFromLittleEndian<double>(data.data(), static_cast<qsizetype>(vector.size()), vector.data());
    return vector;
}

void NormalizedCentroid::add(std::span<const double> vector) {
    if (!takesDimension(vector.size()))
        return;
    for (std::size_t i = 0; i < vector.size(); ++i)
        m_sum[i] += vector[i];
}

void NormalizedCentroid::addData(QByteArrayView data) {
    const std::size_t dimension = static_cast<std::size_t>(data.size()) / sizeof(double);
    if (!takesDimension(dimension))
        return;
    // Stored vectors begin at any byte.
    double* const sum = m_sum.data();
    const char* const bytes = data.data();
    for (std::size_t i = 0; i < dimension; ++i)
        sum[i] += qFromLittleEndian<double>(bytes + i * sizeof(double));
}

bool NormalizedCentroid::takesDimension(std::size_t dimension) {
    if (!m_hasDimension) {
        m_sum.assign(dimension, 0.0);
        m_hasDimension = true;
    }
    if (dimension != m_sum.size())
        return false;
    ++m_count;
    return true;
}

std::vector<double> NormalizedCentroid::value() const {
    std::vector<double> mean = m_sum;
    double square = 0;
    for (double& element : mean) {
        element /= static_cast<double>(m_count);
        square += element * element;
    }
    const double norm = std::sqrt(square);
    if (norm > 0) {
        for (double& element : mean)
            element /= norm;
    }
    return mean;
}

double cosineSimilarity(std::span<const double> a, std::span<const double> b) {
    if (a.size() != b.size())
        return 0;
    double dot = 0;
    double squareA = 0;
    double squareB = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        dot += a[i] * b[i];
        squareA += a[i] * a[i];
        squareB += b[i] * b[i];
    }
    const double norms = std::sqrt(squareA) * std::sqrt(squareB);
    return norms > 0 ? dot / norms : 0;
}

} // namespace corvane
