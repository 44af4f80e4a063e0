// Folders and stamps straight from the system calls: a QFileInfo costs about five times as much. Stateless, any thread.
#pragma once

#include "CorvaneCore/Interfaces/FileTree.h"

namespace corvane {

class LinuxFileTree final : public FileTree {
public:
    [[nodiscard]] std::optional<std::vector<QString>> list(const QString& directory) const override;
    [[nodiscard]] FileStamp stamp(const QString& path) const override;
    [[nodiscard]] std::vector<FileStamp> stamps(const QString& directory,
                                                const std::vector<QString>& relativePaths) const override;
    [[nodiscard]] std::int64_t settledBefore() const override;
};

} // namespace corvane
