#include "Support/Fakes/FakeProcessLauncher.h"
#include "Support/PrintQt.h"
#include "Support/Waiting.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include <QDir>
#include <QTemporaryDir>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace corvane;

namespace {

struct Termination {
    std::atomic<int> calls = 0;
    std::atomic<std::int32_t> status = -1;
    std::atomic<std::thread::id> thread{};

    ProcessLauncher::TerminationHandler handler() {
        return [this](std::int32_t value) {
            status = value;
            thread = std::this_thread::get_id();
            ++calls;
        };
    }
};

class LogFiles {
public:
    LogFiles() {
        writeFileAtomically(output(), {});
        writeFileAtomically(error(), {});
    }
    [[nodiscard]] QString output() const { return m_directory.filePath(u"stdout.log"_s); }
    [[nodiscard]] QString error() const { return m_directory.filePath(u"stderr.log"_s); }
    [[nodiscard]] ProcessRequest request(const QString& executable, const QStringList& arguments = {}) const {
        return {executable, arguments, {}, output(), error()};
    }
    [[nodiscard]] ProcessRequest shell(const char* script) const {
        return request(u"/bin/sh"_s, {u"-c"_s, QString::fromUtf8(script)});
    }

private:
    QTemporaryDir m_directory;
};

// How each implementation is made to run a process that ends with a status.
struct Fake {
    FakeProcessLauncher launcher;
    std::shared_ptr<LaunchedProcess> launchEnding(const LogFiles& logs, std::int32_t status, Termination& end) {
        auto process = launcher.launch(logs.shell("true"), end.handler());
        launcher.endProcess(launcher.launched().size() - 1, status);
        return process;
    }
};

struct Linux {
    LinuxProcessLauncher launcher;
    std::shared_ptr<LaunchedProcess> launchEnding(const LogFiles& logs, std::int32_t status, Termination& end) {
        const QString script = status > 128 ? u"kill -%1 $$"_s.arg(status - 128) : u"exit %1"_s.arg(status);
        return launcher.launch(logs.request(u"/bin/sh"_s, {u"-c"_s, script}), end.handler());
    }
};

template<typename Implementation>
class ProcessLauncherContract : public testing::Test {};
using Implementations = testing::Types<Fake, Linux>;
TYPED_TEST_SUITE(ProcessLauncherContract, Implementations);

class LinuxProcessLauncherTest : public testing::Test {
protected:
    // The end of a process and what it wrote to its standard output.
    QString outputOf(const ProcessRequest& request) {
        Termination end;
        const auto process = launcher.launch(request, end.handler());
        EXPECT_TRUE(waitFor([&] { return end.calls == 1; }));
        return readTextFile(logs.output()).value_or(QString());
    }
    static qsizetype openDescriptors() { return QDir(u"/proc/self/fd"_s).count(); }

    LogFiles logs;
    LinuxProcessLauncher launcher;
};

} // namespace

TYPED_TEST(ProcessLauncherContract, TellsOnceHowAProcessEnded) {
    for (const std::int32_t status : {0, 3, 128 + SIGTERM, 128 + SIGKILL}) {
        const LogFiles logs;
        Termination end;
        std::shared_ptr<LaunchedProcess> process;
        {
            TypeParam implementation;
            process = implementation.launchEnding(logs, status, end);
        }
        ASSERT_TRUE(waitFor([&] { return end.calls > 0; })) << status;
        EXPECT_EQ(end.calls, 1);
        EXPECT_EQ(end.status, status);
        EXPECT_NE(end.thread.load(), std::this_thread::get_id());
        EXPECT_FALSE(process->isRunning());
        EXPECT_EQ(process->terminationStatus(), status);
        EXPECT_GT(process->processID(), 0);
    }
}

TYPED_TEST(ProcessLauncherContract, WhatCannotStartIsAnErrorInTheSystemsWords) {
    TypeParam implementation;
    const LogFiles logs;
    Termination end;
    const auto failure = [&](const ProcessRequest& request) {
        try {
            const auto process = implementation.launcher.launch(request, end.handler());
        } catch (const LaunchError& error) {
            return error.text();
        }
        return u"launched"_s;
    };
    EXPECT_EQ(failure(logs.request(u"/nowhere/corvane-worker"_s)), u"No such file or directory"_s);
    ProcessRequest request = logs.shell("true");
    request.standardError = u"/nowhere/worker.stderr.log"_s;
    EXPECT_EQ(failure(request), u"worker.stderr.log: No such file or directory"_s);
    EXPECT_THROW((void)implementation.launcher.run(u"/nowhere/x"_s, {}), LaunchError);
    EXPECT_EQ(end.calls, 0);
}

TEST_F(LinuxProcessLauncherTest, PassesArgumentsEnvironmentAndFolderAsTheyAre) {
    ::setenv("CORVANE_TEST_KEPT", "kept", 1);
    ::setenv("CORVANE_TEST_REPLACED", "old", 1);
    ProcessRequest request =
        logs.shell("printf '%s|' \"$@\" \"$CORVANE_TEST_KEPT\" \"$CORVANE_TEST_REPLACED\" \"$NEW\"; pwd");
    request.arguments += {u"sh"_s, u"$HOME `x` \"ü\" \\"_s, QString()};
    request.environment = {{u"CORVANE_TEST_REPLACED"_s, u"a=b"_s}, {u"NEW"_s, u"Zürich"_s}};
    EXPECT_EQ(outputOf(request), u"$HOME `x` \"ü\" \\||kept|a=b|Zürich|%1\n"_s.arg(QDir::currentPath()));
    request.arguments += u"cut"_s + QChar(0) + u"short"_s;
    EXPECT_THROW((void)launcher.launch(request, {}), LaunchError);
}

TEST_F(LinuxProcessLauncherTest, WritesLogsFromTheirStartWithoutCuttingThem) {
    writeFileAtomically(logs.output(), "0123456789");
    EXPECT_EQ(outputOf(logs.shell("printf abc; printf wrong >&2; read line && echo input")), u"abc3456789"_s);
    EXPECT_EQ(readTextFile(logs.error()), u"wrong"_s);
}

TEST_F(LinuxProcessLauncherTest, GivesTheChildASessionPlainSignalsAndNoDescriptors) {
    const int leaky = ::open("/dev/null", O_RDONLY); // without O_CLOEXEC
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigset_t before;
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &blocked, &before), 0);
    const auto ignored = ::signal(SIGPIPE, SIG_IGN);
    QString said = outputOf(logs.shell("ls /proc/$$/fd; echo $(($(cut -d' ' -f6 /proc/$$/stat) - $$)); "
                                       "exec grep -E '^Sig(Blk|Ign)' /proc/self/status"));
    ::signal(SIGPIPE, ignored);
    said.replace(u"180000000"_s, u"000000000"_s); // 32 and 33 belong to the C library
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ::close(leaky);
    EXPECT_EQ(said, u"0\n1\n2\n0\nSigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n"_s);
}

TEST_F(LinuxProcessLauncherTest, AChildOutlivesItsParent) {
    Termination end;
    const auto parent =
        launcher.launch(logs.request(QStringLiteral(LAUNCH_AND_WAIT), {u"/bin/sleep"_s, u"60"_s}), end.handler());
    ASSERT_TRUE(waitFor([&] { return readTextFile(logs.output()).value_or(QString()).endsWith(u'\n'); }));
    const pid_t child = readTextFile(logs.output())->trimmed().toInt();
    ASSERT_GT(child, 0);
    ASSERT_EQ(::kill(static_cast<pid_t>(parent->processID()), SIGKILL), 0);
    ASSERT_TRUE(waitFor([&] { return end.calls == 1; }));
    EXPECT_EQ(end.status, 128 + SIGKILL);
    EXPECT_EQ(::kill(child, 0), 0);
    EXPECT_EQ(::getsid(child), child);
    EXPECT_EQ(::kill(child, SIGKILL), 0);
}

TEST_F(LinuxProcessLauncherTest, ManyLaunchesLeaveNothingBehind) {
    Termination end;
    const qsizetype before = openDescriptors();
    for (int i = 0; i < 200; ++i) {
        (void)launcher.launch(logs.shell(":"), end.handler());
        EXPECT_THROW((void)launcher.launch(logs.request(u"/nowhere"_s), {}), LaunchError);
    }
    ASSERT_TRUE(waitFor([&] { return end.calls == 200; }));
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(launcher.run(u"/bin/true"_s, {}).status, 0);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a process was not waited for";
}

TEST_F(LinuxProcessLauncherTest, RunKeepsTheStartOfWhatATalkativeCommandSays) {
    const auto run = [&](const char* script) {
        return launcher.run(u"/bin/sh"_s, {u"-c"_s, QString::fromUtf8(script)});
    };
    const CommandResult both = run("echo önce; echo error >&2; read line || echo no input; exit 7");
    EXPECT_EQ(both.status, 7);
    EXPECT_EQ(both.output, u"önce\nerror\nno input\n"_s);
    const CommandResult talkative = run("echo first; head -c 5000000 /dev/zero; kill -9 $$");
    EXPECT_EQ(talkative.status, 128 + SIGKILL);
    EXPECT_EQ(talkative.output.size(), 1024 * 1024);
    EXPECT_TRUE(talkative.output.startsWith(u"first\n"_s));
}

TEST_F(LinuxProcessLauncherTest, RunDoesNotWaitForWhatACommandLeavesInTheBackground) {
    const CommandResult result = launcher.run(u"/bin/sh"_s, {u"-c"_s, u"sleep 300 & echo $!"_s});
    const pid_t background = result.output.trimmed().toInt();
    ASSERT_GT(background, 0);
    EXPECT_EQ(::kill(background, SIGKILL), 0) << "it was waited for";
}
