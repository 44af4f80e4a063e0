#include "CorvaneCore/Services/DebugCommand.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneCore/Interfaces/SecretStoring.h"
#include "CorvaneCore/Interfaces/Workspace.h"

#include <QFile>

#include <istream>
#include <ostream>
#include <string>

namespace corvane {

namespace {

void print(std::ostream& output, const char* label, const QString& path = {}) {
    // Paths as the file system has them, so that a script can use them as they are.
    output << label << QFile::encodeName(path).constData() << std::endl;
}

} // namespace

std::optional<std::int32_t> DebugCommand::run(const QStringList& arguments, const AppPaths& paths) const {
    if (arguments.size() < 3 || arguments[1] != QLatin1String("debug"))
        return std::nullopt;
    const QString& command = arguments[2];
    if (command == QLatin1String("status"))
        return status(paths);
    if (command == QLatin1String("token-status"))
        return tokenStatus();
    if (command == QLatin1String("save-hf-token"))
        return saveHuggingFaceToken();
    if (command == QLatin1String("open-data-dir"))
        return openDataDirectory(paths);
    print(output, "Unknown debug command");
    return 2;
}

std::int32_t DebugCommand::status(const AppPaths& paths) const {
    print(output, "data_dir=", paths.root);
    print(output, "database=", paths.database());
    print(output, "logs=", paths.logs());
    return 0;
}

std::int32_t DebugCommand::tokenStatus() const {
    bool configured = false;
    try {
        configured = !tokenStore.readHuggingFaceToken().value_or(QString()).isEmpty();
    } catch (const TokenStoreError&) {
        // A store that cannot be read has no token to offer.
    }
    print(output, configured ? "HF_TOKEN=configured" : "HF_TOKEN=missing");
    return 0;
}

std::int32_t DebugCommand::saveHuggingFaceToken() const {
    const auto token = readTokenFromEnvironmentOrStdin();
    if (!token || token->isEmpty()) {
        print(output, "HF_TOKEN=missing");
        return 2;
    }
    try {
        tokenStore.saveHuggingFaceToken(*token);
    } catch (const TokenStoreError&) {
        print(output, "HF_TOKEN=save_failed");
        return 1;
    }
    print(output, "HF_TOKEN=configured");
    return 0;
}

std::int32_t DebugCommand::openDataDirectory(const AppPaths& paths) const {
    try {
        paths.createDirectories();
    } catch (const FileError&) {
        // The file manager shows what is there.
    }
    workspace.open(paths.root);
    return 0;
}

std::optional<QString> DebugCommand::readTokenFromEnvironmentOrStdin() const {
    const auto variable = environment.find(workerEnvironment::huggingFaceToken);
    if (variable != environment.end() && !variable->second.trimmed().isEmpty())
        return variable->second.trimmed();
    std::string line;
    if (!std::getline(input, line))
        return std::nullopt;
    return QString::fromStdString(line).trimmed();
}

} // namespace corvane
