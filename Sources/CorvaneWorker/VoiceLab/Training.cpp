#include "CorvaneWorker/VoiceLab/Training.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneWorker/Diarization/VoiceBackground.h"
#include "CorvaneWorker/VoiceLab/Recordings.h"

#include <Eigen/Eigenvalues>
#include <cmath>
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

struct Discriminants {
    Eigen::RowVectorXd ratios;
    Eigen::MatrixXd projection;
};

Discriminants findDiscriminants(const Spread& spread) {
    const Eigen::MatrixXd diagonal = spread.within.diagonal().asDiagonal();
    const Eigen::MatrixXd within = (1.0 - shrinkage) * spread.within + shrinkage * diagonal;
    // Vectors with v' W v = 1, growing by their ratio of between to within.
    const Eigen::GeneralizedSelfAdjointEigenSolver<Eigen::MatrixXd> solver(spread.between, within);
    return {solver.eigenvalues().tail(voiceVectorSize).reverse().transpose().cwiseMax(0.0),
            solver.eigenvectors().rightCols(voiceVectorSize).rowwise().reverse()};
}

QByteArray rowText(const Eigen::RowVectorXd& row) {
    QByteArray text;
    for (const double value : row)
        text += QByteArray::number(value, 'e', 5) + "F,";
    return text + '\n';
}

} // namespace

void trainBackground(const QString& corpus, const QString& table) {
    std::map<QString, std::vector<WindowMatrix>> voices;
    for (const CorpusFile& file : corpusFiles(corpus))
        voices[file.speaker].push_back(statisticsOfFile(file.path));
    const Spread spread = measureSpread(voices);
    const Discriminants discriminants = findDiscriminants(spread);
    QByteArray text = "// Made by voice-lab: the mean of the statistics, the ratios, the projection row by row.\n";
    text += rowText(spread.mean);
    text += rowText(discriminants.ratios);
    for (Eigen::Index row = 0; row < discriminants.projection.rows(); ++row)
        text += rowText(discriminants.projection.row(row));
    writeFileAtomically(table, text);
}

} // namespace corvane
