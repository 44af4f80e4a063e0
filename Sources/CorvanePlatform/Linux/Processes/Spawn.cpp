#include "CorvanePlatform/Linux/Processes/Spawn.h"

#include "CorvaneContract/Text/UserText.h"

#include <QFile>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace corvane {

namespace {

void check(int error) {
    if (error != 0)
        throw LaunchError(systemErrorText(error));
}

std::string nativeText(const QString& text) {
    // The null character ends a string for the kernel: the rest would be lost without a word.
    if (text.contains(QChar(0)))
        throw LaunchError(UserText::tr("A null character in the command line or the environment"));
    return QFile::encodeName(text).toStdString();
}

// The bytes of the own environment as they are, so that values in another encoding survive, and the additions.
std::vector<std::string> mergedEnvironment(const ProcessEnvironment& additions) {
    std::vector<std::string> result;
    result.reserve(additions.size());
    for (const auto& [key, value] : additions)
        result.push_back(nativeText(key) + '=' + nativeText(value));
    const auto replaced = [&](std::string_view entry) {
        return std::any_of(additions.begin(), additions.end(), [&](const auto& addition) {
            const std::string key = nativeText(addition.first);
            return entry.size() > key.size() && entry.starts_with(key) && entry[key.size()] == '=';
        });
    };
    for (char** entry = environ; entry && *entry; ++entry) {
        if (!replaced(*entry))
            result.emplace_back(*entry);
    }
    return result;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

class Attributes {
public:
    explicit Attributes(SpawnSession session) {
        check(::posix_spawnattr_init(&m_attributes));
        sigset_t none;
        sigset_t all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        ::posix_spawnattr_setsigmask(&m_attributes, &none);
        ::posix_spawnattr_setsigdefault(&m_attributes, &all);
        const int flags =
            POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | (session == SpawnSession::own ? POSIX_SPAWN_SETSID : 0);
        ::posix_spawnattr_setflags(&m_attributes, static_cast<short>(flags));
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { ::posix_spawnattr_destroy(&m_attributes); }
    [[nodiscard]] const posix_spawnattr_t* get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes{};
};

class FileActions {
public:
    FileActions(int standardOutput, int standardError) {
        check(::posix_spawn_file_actions_init(&m_actions));
        const int failure = std::max({
            ::posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0),
            ::posix_spawn_file_actions_adddup2(&m_actions, standardOutput, STDOUT_FILENO),
            ::posix_spawn_file_actions_adddup2(&m_actions, standardError, STDERR_FILENO),
            // Also those of libraries that forget to mark theirs as closed on execution.
            ::posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1),
        });
        if (failure != 0) {
            ::posix_spawn_file_actions_destroy(&m_actions);
            check(failure);
        }
    }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { ::posix_spawn_file_actions_destroy(&m_actions); }
    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions{};
};

} // namespace

QString systemErrorText(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

pid_t spawn(const SpawnRequest& request) {
    std::vector<std::string> arguments{nativeText(request.executable)};
    for (const QString& argument : request.arguments)
        arguments.push_back(nativeText(argument));
    std::vector<std::string> environment = mergedEnvironment(request.environment);
    const FileActions actions(request.standardOutput, request.standardError);
    const Attributes attributes(request.session);

    pid_t process = -1;
    check(::posix_spawn(&process, arguments.front().c_str(), actions.get(), attributes.get(),
                        pointers(arguments).data(), pointers(environment).data()));
    return process;
}

std::int32_t waitForEnd(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            return statusUnknown;
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace corvane
