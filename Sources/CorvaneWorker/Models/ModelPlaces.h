// Where models lie on disk. Looked up once per run; any thread.
#pragma once

#include <QString>
#include <QStringList>

namespace corvane {

// The directories that models are looked for in, the first one with a model wins: those of CORVANE_WORKER_MODELS (one
// or several, with a colon between them), `corvane/models` of the user's and of the system's data directories, and the
// one that this program was built for. They need not exist.
[[nodiscard]] QStringList modelPlaces();

// The first directory or file of that relative name in the places; empty if there is none.
[[nodiscard]] QString findModel(const QString& relativeName);

// All directories right below `kind` in the places, in the order in which they are preferred: earlier places first, and
// in each place by name. A name that an earlier place has hides those behind it.
[[nodiscard]] QStringList modelDirectories(const QString& kind);

} // namespace corvane
