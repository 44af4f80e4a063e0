#include "CorvaneCore/Services/PackageManagers.h"

#include <array>

namespace corvane {

namespace {

QStringList words(const char* text) {
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

PackageManager manager(const char* program, const char* install, const char* handInstall,
                       const std::array<const char*, 3>& packages) {
    return {.program = QString::fromLatin1(program),
            .install = words(install),
            .handInstall = words(handInstall),
            .python = QString::fromLatin1(packages[0]),
            .uv = QString::fromLatin1(packages[1]),
            .ffmpeg = QString::fromLatin1(packages[2])};
}

} // namespace

QString PackageManager::package(const QString& formula) const {
    if (formula == QLatin1String("python"))
        return python;
    return formula == QLatin1String("uv") ? uv : ffmpeg;
}

const PackageManager& homebrewManager() {
    static const PackageManager homebrew = manager("brew", "brew install", "brew install", {"python", "uv", "ffmpeg"});
    return homebrew;
}

std::span<const PackageManager> distributionManagers() {
    // Debian 12 and what is made of it have no package of uv.
    static const std::array managers{
        manager("apt-get", "pkexec apt-get install -y", "sudo apt-get install", {"python3", "", "ffmpeg"}),
        manager("dnf", "pkexec dnf install -y", "sudo dnf install", {"python3", "uv", "ffmpeg-free"}),
        manager("pacman", "pkexec pacman -S --needed --noconfirm", "sudo pacman -S", {"python", "uv", "ffmpeg"}),
    };
    return managers;
}

} // namespace corvane
