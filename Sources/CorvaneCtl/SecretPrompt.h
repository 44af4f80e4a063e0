// Reading a secret that must not show on the terminal, in a list of processes, or in a core file.
#pragma once

#include <QString>

#include <optional>

namespace corvane::ctl {

// One line of standard input, without blanks around it. At a terminal it is asked for, and what is typed is not shown;
// Ctrl-C and Ctrl-D give nothing, as does an input that ends at once. Throws CtlError for more than 64 KB and for
// control characters. No core file is written by this process any more.
[[nodiscard]] std::optional<QString> readSecret(const QString& prompt);

} // namespace corvane::ctl
