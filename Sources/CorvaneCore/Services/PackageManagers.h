// How a machine gets the command-line tools that a worker may need: the package managers that are known, and what each
// calls the tools. Pure; any thread.
#pragma once

#include <QStringList>

#include <span>

namespace corvane {

struct PackageManager {
    QString program;         // the command by which its presence is told
    QStringList install;     // the packages follow
    QStringList handInstall; // the same for a terminal, where the user gives a password
    QString python;          // the packages of the tools; empty: it has none
    QString uv;
    QString ffmpeg;

    // What it calls a formula, "python", "uv" or "ffmpeg".
    [[nodiscard]] QString package(const QString& formula) const;
};

// Homebrew. It needs no administrator, and its packages have the names of the formulae.
[[nodiscard]] const PackageManager& homebrewManager();
// Those of distributions, in the order in which they are looked for.
[[nodiscard]] std::span<const PackageManager> distributionManagers();

} // namespace corvane
