// For a command that is several, told apart by its first operand: the operands behind it, and the outcome.
#pragma once

#include <QStringList>

namespace corvane::ctl {

class Session;

// Throws UsageError with `form`, how the action is written behind the command, if there are too few or too many.
[[nodiscard]] QStringList actionOperands(const Session& session, qsizetype minimum, qsizetype maximum,
                                         const char* form);

// Throws CtlError with what the status line says if the model has not done it.
void requireDone(Session& session, bool done);

} // namespace corvane::ctl
