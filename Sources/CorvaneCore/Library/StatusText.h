// What a meeting's or a run's status is called before a user. Documents hold the status itself. Pure functions.
#pragma once

#include <QString>

namespace corvane {

// As one word among others, "completed". One that a worker has thought up is shown as it is.
[[nodiscard]] QString statusText(const QString& status);
// As a line of its own, "Completed".
[[nodiscard]] QString statusSentence(const QString& status);

} // namespace corvane
