#include "CorvaneWorker/VoiceLab/Training.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneWorker/Diarization/VoiceBackground.h"
#include "CorvaneWorker/VoiceLab/Recordings.h"

#include <Eigen/Eigenvalues>
#include <cstdio>
#include <map>

namespace corvane {

namespace {

constexpr double shrinkage = 0.1; // of the spread within a voice towards its diagonal

struct Spread {
    Eigen::RowVectorXd mean;
    Eigen::MatrixXd within;
    Eigen::MatrixXd between;
};

// Every voice counts alike, however long it spoke.
Spread measureSpread(const std::map<QString, std::vector<WindowMatrix>>& voices) {
    constexpr Eigen::Index size = voiceStatisticsSize;
    Spread spread{Eigen::RowVectorXd::Zero(size), Eigen::MatrixXd::Zero(size, size), Eigen::MatrixXd::Zero(size, size)};
    std::vector<Eigen::RowVectorXd> means;
    for (const auto& [speaker, files] : voices) {
        Eigen::RowVectorXd mean = Eigen::RowVectorXd::Zero(size);
        double rows = 0;
        for (const WindowMatrix& file : files) {
            mean += file.cast<double>().colwise().sum();
            rows += static_cast<double>(file.rows());
        }
        mean /= rows;
        for (const WindowMatrix& file : files) {
            const Eigen::MatrixXd centred = file.cast<double>().rowwise() - mean;
            spread.within += centred.transpose() * centred / rows / static_cast<double>(voices.size());
        }
        means.push_back(mean);
        spread.mean += mean / static_cast<double>(voices.size());
    }
    for (const Eigen::RowVectorXd& mean : means)
        spread.between += (mean - spread.mean).transpose() * (mean - spread.mean) / static_cast<double>(means.size());
    return spread;
}

Eigen::MatrixXd discriminants(Spread spread) {
    const Eigen::MatrixXd diagonal = spread.within.diagonal().asDiagonal();
    spread.within = (1.0 - shrinkage) * spread.within + shrinkage * diagonal;
    const Eigen::GeneralizedSelfAdjointEigenSolver<Eigen::MatrixXd> solver(spread.between, spread.within);
    // Vectors with v' W v = 1, growing by their ratio of between to within.
    Eigen::MatrixXd projection = solver.eigenvectors().rightCols(voiceVectorSize).rowwise().reverse();
    for (Eigen::Index column = 0; column < projection.cols(); ++column) {
        const double ratio = std::max(0.0, solver.eigenvalues()[solver.eigenvalues().size() - 1 - column]);
        projection.col(column) *= std::sqrt(ratio / (1.0 + ratio));
        std::fprintf(stderr, "%.3f ", ratio);
    }
    std::fputc('\n', stderr);
    return projection;
}

QByteArray rowText(const Eigen::RowVectorXd& row) {
    QByteArray text;
    for (const double value : row)
        text += QByteArray::number(value, 'g', 6) + (value == std::floor(value) ? ".0F," : "F,");
    return text + '\n';
}

} // namespace

void trainBackground(const QString& corpus, const QString& table, const QString& without) {
    std::map<QString, std::vector<WindowMatrix>> voices;
    for (const CorpusFile& file : corpusFiles(corpus))
        if (without.isEmpty() || !file.speaker.startsWith(without))
            voices[file.speaker].push_back(statisticsOfFile(file.path));
    const Spread spread = measureSpread(voices);
    const Eigen::MatrixXd projection = discriminants(spread);
    QByteArray text = "// Made by voice-lab; the mean of the statistics, then the projection, row by row.\n";
    text += rowText(spread.mean);
    for (Eigen::Index row = 0; row < projection.rows(); ++row)
        text += rowText(projection.row(row));
    writeFileAtomically(table, text);
}

} // namespace corvane
