#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"

#include "CorvanePlatform/Linux/UniqueFd.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <memory>
#include <system_error>
#include <thread>

namespace corvane {

namespace {

std::int64_t nanoseconds(const timespec& time) {
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

FileStamp::Kind kindOf(mode_t mode) {
    if (S_ISREG(mode))
        return FileStamp::Kind::regularFile;
    return S_ISDIR(mode) ? FileStamp::Kind::directory : FileStamp::Kind::other;
}

FileStamp stampAt(int directory, const QString& path) {
    // A null character would cut the name short and stamp another file.
    if (path.contains(QChar(0)))
        return {};
    struct stat status {};
    if (::fstatat(directory, QFile::encodeName(path).constData(), &status, 0) != 0)
        return {};
    return {.kind = kindOf(status.st_mode),
            .device = status.st_dev,
            .inode = status.st_ino,
            .size = status.st_size,
            .modifiedNanoseconds = nanoseconds(status.st_mtim),
            .statusNanoseconds = nanoseconds(status.st_ctim)};
}

UniqueFd openDirectory(const QString& path, int flags) {
    if (path.contains(QChar(0)))
        return {};
    return UniqueFd(::open(QFile::encodeName(path).constData(), flags | O_DIRECTORY | O_CLOEXEC));
}

} // namespace

std::optional<std::vector<QString>> LinuxFileTree::list(const QString& directory) const {
    UniqueFd fd = openDirectory(directory, O_RDONLY);
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(fd ? ::fdopendir(fd.get()) : nullptr, ::closedir);
    if (!stream)
        return std::nullopt;
    fd.release(); // the stream closes it
    std::vector<QString> names;
    while (true) {
        errno = 0;
        const dirent* entry = ::readdir(stream.get()); // NOLINT(concurrency-mt-unsafe): no other thread has this stream
        if (!entry)
            // A list cut short would look like files that were removed.
            return errno == 0 ? std::optional(std::move(names)) : std::nullopt;
        if (entry->d_name[0] != '.')
            names.push_back(QFile::decodeName(entry->d_name));
    }
}

FileStamp LinuxFileTree::stamp(const QString& path) const {
    return stampAt(AT_FDCWD, path);
}

std::vector<FileStamp> LinuxFileTree::stamps(const QString& directory,
                                             const std::vector<QString>& relativePaths) const {
    std::vector<FileStamp> result(relativePaths.size());
    // O_PATH asks for no right to read the folder, as a stamp of a single path does not either.
    const UniqueFd fd = openDirectory(directory, O_PATH);
    if (!fd)
        return result;
    const auto stampRange = [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i)
            result[i] = stampAt(fd.get(), relativePaths[i]);
    };
    // The time goes into the kernel's walk along the path, about 1.3 µs each, so that further cores help.
    constexpr std::size_t worthAThread = 4096;
    const std::size_t parts = std::clamp<std::size_t>(result.size() / worthAThread, 1,
                                                      std::clamp(std::thread::hardware_concurrency(), 1U, 4U));
    const std::size_t share = result.size() / parts;
    std::size_t begin = 0;
    {
        std::vector<std::jthread> helpers;
        try {
            while (helpers.size() + 1 < parts) {
                helpers.emplace_back(stampRange, begin, begin + share);
                begin += share;
            }
        } catch (const std::system_error&) {
            // No further thread to be had: the rest is done here.
        }
        stampRange(begin, result.size());
    }
    return result;
}

std::int64_t LinuxFileTree::settledBefore() const {
    // The kernel stamps a change with the time of its last tick, which is what the coarse clock tells and lies up to
    // 10 ms back. Two changes within one tick leave the same stamp. The margin is a few ticks.
    constexpr std::int64_t margin = 50'000'000;
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return nanoseconds(now) - margin;
}

} // namespace corvane
