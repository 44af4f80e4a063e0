// The one-shot command line that never opens any user interface: `debug status`, `debug token-status`,
// `debug save-hf-token` and `debug open-data-dir`. It runs before anything else exists; every outcome is a printed line
// and an exit status.
#pragma once

#include "CorvaneCore/Interfaces/ProcessLauncher.h"
#include "CorvaneCore/Library/AppPaths.h"

#include <QStringList>

#include <cstdint>
#include <iosfwd>
#include <optional>

namespace corvane {

class SecretStoring;
class Workspace;

struct DebugCommand {
    SecretStoring& tokenStore;
    Workspace& workspace;
    ProcessEnvironment environment;
    std::istream& input;
    std::ostream& output;

    // `arguments` with the program's name first. Nothing if they hold no debug command: then the application starts.
    [[nodiscard]] std::optional<std::int32_t> run(const QStringList& arguments, const AppPaths& paths) const;

private:
    [[nodiscard]] std::int32_t status(const AppPaths& paths) const;
    [[nodiscard]] std::int32_t tokenStatus() const;
    [[nodiscard]] std::int32_t saveHuggingFaceToken() const;
    [[nodiscard]] std::int32_t openDataDirectory(const AppPaths& paths) const;
    [[nodiscard]] std::optional<QString> readTokenFromEnvironmentOrStdin() const;
};

} // namespace corvane
