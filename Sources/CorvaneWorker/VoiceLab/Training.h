// Learns the voice background: the mean of many voices, and the projection that weighs down what varies within one.
#pragma once

#include <QString>

namespace corvane {

// Linear discriminant analysis (Fisher) of the window statistics, its directions scaled so that the spread within a
// voice is one. Writes the table as C++ initialisers. Throws WorkerError and FileError.
void trainBackground(const QString& corpus, const QString& table);

} // namespace corvane
