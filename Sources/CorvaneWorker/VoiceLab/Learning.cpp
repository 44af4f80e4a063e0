#include "CorvaneWorker/VoiceLab/Learning.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneWorker/Models/ModelPlaces.h"
#include "CorvaneWorker/Voice/KaldiFiles.h"
#include "CorvaneWorker/Voice/VoiceTable.h"
#include "CorvaneWorker/VoiceLab/Recordings.h"

#include <Eigen/Eigenvalues>
#include <map>

namespace corvane {

namespace {

constexpr Eigen::Index fewestWindows = 10;
constexpr double windowShrinkage = 0.01; // of the spread within a voice, towards a ball of the same trace
constexpr double channelFloor = 0.3;     // of the mean variance between recordings of one voice

using Matrix = Eigen::MatrixXd;

struct Person {
    std::vector<Eigen::RowVectorXd> recordings; // the mean of the windows of each
    std::vector<Eigen::RowVectorXd> clean;
};

// What the recordings of people tell.
struct Observations {
    std::map<QString, Person> people;
    Matrix window = Matrix::Zero(networkVectorSize, networkVectorSize); // the spread within recordings
    double windows = 0;
    Eigen::RowVectorXd active = Eigen::RowVectorXd::Zero(networkVectorSize); // how often each number is above zero
};

Eigen::RowVectorXd meanOf(const std::vector<Eigen::RowVectorXd>& rows) {
    Eigen::RowVectorXd sum = Eigen::RowVectorXd::Zero(networkVectorSize);
    for (const auto& row : rows)
        sum += row;
    return sum / static_cast<double>(rows.size());
}

Matrix ball(const Matrix& spread, double share) {
    return spread + share * spread.trace() / networkVectorSize * Matrix::Identity(networkVectorSize, networkVectorSize);
}

QByteArray printed(const Matrix& values) {
    QByteArray text;
    for (Eigen::Index row = 0; row < values.rows(); ++row)
        for (Eigen::Index column = 0; column < values.cols(); ++column) {
            text += QByteArray::number(static_cast<double>(static_cast<float>(values(row, column))), 'e', 3) + "F,";
            text += column % 10 == 9 || column + 1 == values.cols() ? '\n' : ' ';
        }
    return text;
}

Observations observe(const QString& people, const Eigen::RowVectorXd& offset) {
    Observations seen;
    double rows = 0;
    for (const CorpusFile& file : corpusFiles(people)) {
        const Matrix vectors = networkWindowsOfFile(file.path, {}).cast<double>();
        if (vectors.rows() < fewestWindows)
            continue;
        const Eigen::RowVectorXd mean = vectors.colwise().mean();
        const Matrix centred = vectors.rowwise() - mean;
        seen.window += centred.transpose() * centred;
        seen.windows += static_cast<double>(vectors.rows() - 1);
        seen.active += ((vectors.rowwise() + offset).array() > 0.0).cast<double>().matrix().colwise().sum();
        rows += static_cast<double>(vectors.rows());
        Person& person = seen.people[file.speaker.section(QLatin1Char('@'), 0, 0)];
        person.recordings.push_back(mean);
        if (file.path.contains(QLatin1String("-clean")))
            person.clean.push_back(mean);
    }
    seen.window /= seen.windows;
    seen.active /= rows;
    return seen;
}

Matrix spreadOf(const std::vector<Eigen::RowVectorXd>& points) {
    const Eigen::RowVectorXd mean = meanOf(points);
    Matrix spread = Matrix::Zero(networkVectorSize, networkVectorSize);
    for (const auto& point : points)
        spread += (point - mean).transpose() * (point - mean) / static_cast<double>(points.size() - 1);
    return spread;
}

// How the thousands of people differ whom the network was trained to tell apart: the last layer has a row for each,
// which is the direction of that voice, the spread within voices taken out. The rectifier before it is taken for what
// it does on average.
Matrix spreadOfTrainers(const Observations& seen) {
    const QString directory = findModel(QStringLiteral("voice/xvector-8khz"));
    const auto bytes = readFile(directory + QStringLiteral("/final.ext.raw")).value_or(QByteArray());
    const KaldiNetwork network = parseKaldiNetwork(bytes);
    const Matrix weights = network.components.at("output.affine").matrices.at("LinearParams").cast<double>();
    const Eigen::VectorXd variance =
        network.components.at("tdnn6.batchnorm").matrices.at("StatsVar").col(0).cast<double>();
    const Eigen::VectorXd gain = seen.active.transpose().array() / (variance.array() + 1e-3).sqrt();
    const Matrix directions = weights * gain.asDiagonal();
    const Matrix centred = directions.rowwise() - directions.colwise().mean();
    return seen.window * (centred.transpose() * centred / static_cast<double>(centred.rows() - 1)) * seen.window;
}

} // namespace

void learnVoices(const QString& people, const QString& table) {
    const auto text = readFile(findModel(QStringLiteral("voice/xvector-8khz/mean.vec"))).value_or(QByteArray());
    const Observations seen = observe(people, parseKaldiVector(text).transpose().cast<double>());
    Matrix channel = Matrix::Zero(networkVectorSize, networkVectorSize);
    double recordings = 0;
    std::vector<Eigen::RowVectorXd> centres;
    std::vector<Eigen::RowVectorXd> ownCentres;
    for (const auto& [name, person] : seen.people) {
        if (!person.clean.empty())
            centres.push_back(meanOf(person.clean));
        if (name.contains(QLatin1Char('^')))
            continue;
        if (!person.clean.empty())
            ownCentres.push_back(centres.back());
        const Eigen::RowVectorXd mean = meanOf(person.recordings);
        for (const auto& recording : person.recordings)
            channel += (recording - mean).transpose() * (recording - mean);
        recordings += static_cast<double>(person.recordings.size()) - 1;
    }
    const Matrix trainers = spreadOfTrainers(seen);
    const Matrix between = 0.5 * spreadOf(centres) + 0.5 * spreadOf(ownCentres).trace() / trainers.trace() * trainers;
    // Both solvers sort from the smallest value on.
    const Eigen::GeneralizedSelfAdjointEigenSolver<Matrix> voices(between, ball(seen.window, windowShrinkage));
    const Eigen::SelfAdjointEigenSolver<Matrix> channels(channel / recordings);
    const Eigen::VectorXd spread = channels.eigenvalues().tail(channelDirections);
    const double floor = channelFloor * channels.eigenvalues().mean();
    const double rest = channels.eigenvalues().head(networkVectorSize - channelDirections).mean() + floor;
    const Eigen::VectorXd damping = 1.0 - (rest / (spread.array() + floor)).sqrt();
    writeFileAtomically(
        table, "// Made by voice-lab: mean; ratios, directions; damping, channels. Row by row.\n" +
                   printed(meanOf(ownCentres)) + printed(voices.eigenvalues().tail(voiceDirections).transpose()) +
                   printed(voices.eigenvectors().rightCols(voiceDirections)) + printed(damping.transpose()) +
                   printed(channels.eigenvectors().rightCols(channelDirections)));
}

} // namespace corvane
