#include "CorvaneWorker/VoiceLab/Learning.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneWorker/Voice/VoiceTable.h"
#include "CorvaneWorker/VoiceLab/Recordings.h"

#include <Eigen/Eigenvalues>
#include <map>

namespace corvane {

namespace {

constexpr double windowShrinkage = 0.01; // of the spread within a voice, towards a ball of the same trace
constexpr double channelFloor = 0.3;     // of the mean variance between recordings of one voice

using Matrix = Eigen::MatrixXd;

struct Person {
    std::vector<Eigen::RowVectorXd> recordings; // the mean of the windows of each
    std::vector<Eigen::RowVectorXd> clean;
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
            text += QByteArray::number(static_cast<double>(static_cast<float>(values(row, column))), 'e', 4) + "F,";
            text += column % 10 == 9 || column + 1 == values.cols() ? '\n' : ' ';
        }
    return text;
}

} // namespace

void learnVoices(const QString& people, const QString& table) {
    std::map<QString, Person> persons;
    Matrix window = Matrix::Zero(networkVectorSize, networkVectorSize);
    double windows = 0;
    for (const CorpusFile& file : corpusFiles(people)) {
        const Matrix vectors = networkWindowsOfFile(file.path).cast<double>();
        if (vectors.rows() < 10)
            continue;
        const Eigen::RowVectorXd mean = vectors.colwise().mean();
        const Matrix centred = vectors.rowwise() - mean;
        window += centred.transpose() * centred;
        windows += static_cast<double>(vectors.rows() - 1);
        Person& person = persons[file.speaker.section(QLatin1Char('@'), 0, 0)];
        person.recordings.push_back(mean);
        if (file.path.contains(QLatin1String("-clean")))
            person.clean.push_back(mean);
    }
    Matrix channel = Matrix::Zero(networkVectorSize, networkVectorSize);
    double recordings = 0;
    std::vector<Eigen::RowVectorXd> centres;
    for (const auto& [name, person] : persons) {
        const Eigen::RowVectorXd mean = meanOf(person.recordings);
        for (const auto& recording : person.recordings)
            channel += (recording - mean).transpose() * (recording - mean);
        recordings += static_cast<double>(person.recordings.size()) - 1;
        if (!person.clean.empty())
            centres.push_back(meanOf(person.clean));
    }
    const Eigen::RowVectorXd mean = meanOf(centres);
    Matrix between = Matrix::Zero(networkVectorSize, networkVectorSize);
    for (const auto& centre : centres)
        between += (centre - mean).transpose() * (centre - mean) / static_cast<double>(centres.size() - 1);
    // Both solvers sort from the smallest value on.
    const Eigen::GeneralizedSelfAdjointEigenSolver<Matrix> voices(between, ball(window / windows, windowShrinkage));
    const Eigen::SelfAdjointEigenSolver<Matrix> channels(channel / recordings);
    const Eigen::VectorXd spread = channels.eigenvalues().tail(channelDirections);
    const double floor = channelFloor * channels.eigenvalues().mean();
    const double rest = channels.eigenvalues().head(networkVectorSize - channelDirections).mean() + floor;
    const Eigen::VectorXd damping = 1.0 - (rest / (spread.array() + floor)).sqrt();
    writeFileAtomically(table, "// Made by voice-lab: mean; ratios, directions; damping, channels. Row by row.\n" +
                                   printed(mean) + printed(voices.eigenvalues().tail(voiceDirections).transpose()) +
                                   printed(voices.eigenvectors().rightCols(voiceDirections)) +
                                   printed(damping.transpose()) +
                                   printed(channels.eigenvectors().rightCols(channelDirections)));
}

} // namespace corvane
