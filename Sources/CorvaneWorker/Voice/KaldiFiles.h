// Reads what a network trained with Kaldi is stored in: its binary "nnet3" file and its text vectors. Values; any
// thread.
#pragma once

#include "CorvaneWorker/WorkerError.h"

#include <QByteArrayView>

#include <Eigen/Core>
#include <map>
#include <string>
#include <vector>

namespace corvane {

// A file of a model that is cut short, damaged or of another kind. The text is one sentence without the file's name.
class ModelError : public WorkerError {
public:
    using WorkerError::WorkerError;
};

// A layer's numbers under their names in the file, without the angle brackets.
struct KaldiComponent {
    std::string type;
    std::map<std::string, float> numbers; // of four bytes that are floats; whole numbers come out meaningless
    std::map<std::string, Eigen::MatrixXf> matrices; // a vector is one column
};

struct KaldiNode {
    std::string name;
    std::string component; // empty for the input and output nodes
    std::string input;     // a descriptor: another node's name, or Append(Offset(name, -1), name, ...)
};

struct KaldiNetwork {
    std::vector<KaldiNode> nodes; // in the order of the file
    std::map<std::string, KaldiComponent> components;
};

// Throws ModelError.
[[nodiscard]] KaldiNetwork parseKaldiNetwork(QByteArrayView bytes);

// "[ 1.5 2 ]". Throws ModelError.
[[nodiscard]] Eigen::VectorXf parseKaldiVector(QByteArrayView text);

} // namespace corvane
