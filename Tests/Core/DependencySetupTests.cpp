// Looking for the command-line tools and getting those that are missing, on a machine that exists only here.
#include "Support/Fakes/FakeProcessLauncher.h"
#include "Support/MainLoop.h"

#include "CorvaneCore/Services/DependencySetupModel.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <atomic>
#include <mutex>
#include <set>

using namespace corvane;
using testing::ElementsAre;

namespace {

const QString offline = u"uv run --offline --no-project --with whispermlx python -m whispermlx --help"_s;
const QString online = u"uv run --no-project --with whispermlx python -m whispermlx --help"_s;

QString asked(const char* tool) {
    return u"zsh -lc command -v %1 >/dev/null 2>&1"_s.arg(QLatin1String(tool));
}

// Its package managers put their packages there, unless they fail.
class Machine {
public:
    Machine() {
        launcher->onCommand = [this](const QStringList& words, const CommandCancellation& cancelled) {
            return answer(words, cancelled);
        };
    }

    std::set<QString> tools;
    std::set<QString> shells{u"zsh"_s, u"sh"_s};
    bool isWhisperCached = false;
    bool doInstallsWork = true;
    std::int32_t installStatus = 0;
    QString whisperOutput = u"usage: whispermlx\n"_s;
    std::atomic<bool> isHanging = false; // every command, until it is cancelled or this is over
    std::atomic<bool> wasCancelled = false;
    std::shared_ptr<FakeProcessLauncher> launcher = std::make_shared<FakeProcessLauncher>();

    // Without "/usr/bin/env".
    QStringList commands() const {
        QStringList all;
        for (const QStringList& command : launcher->commands()) {
            EXPECT_EQ(command.first(), u"/usr/bin/env"_s);
            all << command.mid(1).join(u' ');
        }
        return all;
    }
    // Those that change something.
    QStringList changes() const {
        QStringList all = commands();
        all.erase(
            std::remove_if(all.begin(), all.end(),
                           [](const QString& command) { return command.contains(u"sh -lc"_s) || command == offline; }),
            all.end());
        return all;
    }

private:
    CommandResult answer(const QStringList& words, const CommandCancellation& cancelled) {
        while (isHanging) {
            if (*cancelled) {
                wasCancelled = true;
                return {137, {}};
            }
            std::this_thread::yield();
        }
        const std::lock_guard guard(m_mutex);
        if (words.value(1) == u"-lc"_s) {
            const QString tool = words.at(2).section(u' ', 2, 2);
            return {shells.contains(words.first()) ? (tools.contains(tool) ? 0 : 1) : 127, {}};
        }
        if (words.first() == u"uv"_s)
            return whisper(words.contains(u"--offline"_s));
        if (doInstallsWork && installStatus == 0) {
            for (const QString& package : words.mid(2))
                tools.insert(package == u"python"_s ? u"python3"_s : package);
        }
        return {installStatus, words.first() + u" says something\n"_s};
    }
    CommandResult whisper(bool isOffline) {
        if (!tools.contains(u"uv"_s))
            return {127, u"env: uv: No such file or directory\n"_s};
        if (!isOffline)
            isWhisperCached = true;
        return {isWhisperCached ? 0 : 2, isOffline ? QString() : whisperOutput};
    }

    std::mutex m_mutex;
};

class DependencySetupTest : public testing::Test {
protected:
    DependencySetupTest() {
        QObject::connect(&model, &DependencySetupModel::looked, [this] { ++m_looks; });
    }

    // Presses the button and waits until the look at the tools that follows is over.
    void install() {
        waitForALook([this] { model.installMissingTools(); });
        EXPECT_FALSE(model.isRunning());
    }
    void refresh() {
        waitForALook([this] { model.refresh(); });
    }

    Machine machine;
    DependencySetupModel model{machine.launcher};

private:
    template<typename Action>
    void waitForALook(const Action& action) {
        const int before = m_looks;
        action();
        ASSERT_TRUE(loopUntil([&] { return m_looks > before; }));
        // The last question of a look is for the distribution's package manager.
        const QStringList all = machine.commands();
        const bool hasManager = machine.tools.contains(u"apt-get"_s);
        EXPECT_EQ(all.last(), asked(hasManager ? "apt-get" : "pacman"));
        EXPECT_TRUE(all.contains(offline));
        EXPECT_EQ(model.distributionManagerReady(), hasManager);
    }

    int m_looks = 0;
};

} // namespace

TEST_F(DependencySetupTest, ALookAsksInOrderUnderAFixedPathAndShowsEachAnswerAtOnce) {
    machine.tools = {u"python3"_s, u"ffmpeg"_s};
    std::vector<QString> published;
    QObject::connect(&model, &DependencySetupModel::changed, [&] {
        published.push_back(u"%1%2%3%4%5"_s.arg(model.pythonReady())
                                .arg(model.uvReady())
                                .arg(model.ffmpegReady())
                                .arg(model.whisperReady())
                                .arg(model.hasLooked()));
    });
    refresh();
    EXPECT_THAT(machine.commands(), ElementsAre(asked("brew"), asked("python3"), asked("uv"), asked("ffmpeg"), offline,
                                                asked("apt-get"), asked("dnf"), asked("pacman")));
    EXPECT_THAT(published, ElementsAre(u"10000"_s, u"10100"_s, u"10101"_s));
    for (const ProcessEnvironment& environment : machine.launcher->commandEnvironments())
        EXPECT_EQ(environment, (ProcessEnvironment{
                                   {u"PATH"_s, u"/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin"_s}}));
}

TEST_F(DependencySetupTest, WithAllToolsThereOnlyThePackageIsFetched) {
    machine.tools = {u"brew"_s, u"python3"_s, u"uv"_s, u"ffmpeg"_s};
    refresh();
    EXPECT_FALSE(model.allReady());
    install();
    EXPECT_THAT(machine.changes(), ElementsAre(online));
    EXPECT_EQ(model.message(), u"usage: whispermlx"_s);
    EXPECT_TRUE(model.allReady());
}

TEST_F(DependencySetupTest, HomebrewGetsAllThatIsMissingAtOnce) {
    machine.tools = {u"brew"_s};
    install();
    EXPECT_THAT(machine.changes(), ElementsAre(u"brew install python uv ffmpeg"_s, online));
    EXPECT_EQ(model.message(), u"brew says something\n\nusage: whispermlx"_s);
    EXPECT_TRUE(model.brewReady() && model.allReady());
}

TEST_F(DependencySetupTest, WithoutUvThePackageIsNotFetched) {
    machine.tools = {u"brew"_s, u"python3"_s};
    machine.doInstallsWork = false;
    install();
    EXPECT_THAT(machine.changes(), ElementsAre(u"brew install uv ffmpeg"_s));
    EXPECT_EQ(model.message(), u"brew says something"_s);
}

TEST_F(DependencySetupTest, ASilentPackageCountsAsVerified) {
    machine.tools = {u"python3"_s, u"uv"_s, u"ffmpeg"_s};
    machine.whisperOutput.clear();
    install();
    EXPECT_EQ(model.message(), u"whispermlx verified"_s);
    EXPECT_TRUE(model.allReady());
    EXPECT_FALSE(model.brewReady());
}

TEST_F(DependencySetupTest, ADistributionsManagerTakesThePlaceOfHomebrew) {
    machine.tools = {u"apt-get"_s};
    machine.installStatus = 126; // the user did not give the password
    install();
    EXPECT_THAT(machine.changes(), ElementsAre(u"pkexec apt-get install -y python3 ffmpeg"_s));
    EXPECT_THAT(model.message().toStdString(),
                testing::AllOf(testing::StartsWith("pkexec says something"),
                               testing::HasSubstr("run in a terminal: sudo apt-get install python3 ffmpeg\n"),
                               testing::HasSubstr("uv is not among the packages of apt-get.")));
    machine.installStatus = 0;
    install();
    EXPECT_TRUE(model.pythonReady() && model.ffmpegReady() && !model.uvReady());
    EXPECT_FALSE(model.message().contains(u"terminal"_s));
}

TEST_F(DependencySetupTest, WithoutAnyManagerHomebrewsAbsenceIsWhatTheUserReads) {
    machine.launcher->onCommand = nullptr;
    model.installMissingTools();
    ASSERT_TRUE(loopUntil([&] { return !model.isRunning(); }));
    EXPECT_EQ(model.message(), u"No such file or directory"_s);
    EXPECT_THAT(machine.commands(), testing::Contains(u"brew install python uv ffmpeg"_s));
}

TEST_F(DependencySetupTest, WithoutZshTheOrdinaryShellIsAsked) {
    machine.shells = {u"sh"_s};
    machine.tools = {u"uv"_s};
    const DependencySetup setup(machine.launcher, {});
    EXPECT_TRUE(setup.commandExists(u"uv"_s));
    EXPECT_FALSE(setup.commandExists(u"ffmpeg"_s));
    machine.shells = {};
    EXPECT_FALSE(setup.commandExists(u"uv"_s));
    const DependencySetup real(std::make_shared<LinuxProcessLauncher>(), {});
    EXPECT_TRUE(real.commandExists(u"ls"_s));
    EXPECT_FALSE(real.commandExists(u"corvane-no-such-command"_s));
    EXPECT_TRUE(real.run(u"/usr/bin/env"_s, {u"printenv"_s, u"PATH"_s}).output.startsWith(u"/opt/homebrew/bin:"_s));
}

TEST_F(DependencySetupTest, ASecondInstallationIsRefusedAndTheEndOfTheModelEndsTheFirst) {
    machine.isHanging = true;
    {
        DependencySetupModel hanging(machine.launcher);
        QElapsedTimer clock;
        clock.start();
        hanging.installMissingTools();
        EXPECT_TRUE(hanging.isRunning());
        EXPECT_EQ(hanging.message(), u"Starting dependency setup..."_s);
        hanging.installMissingTools();
        hanging.reset();
        EXPECT_LT(clock.elapsed(), 1000);
        ASSERT_TRUE(loopUntil([&] { return machine.commands().size() == 1; }));
        EXPECT_TRUE(hanging.isRunning());
    }
    EXPECT_TRUE(machine.wasCancelled);
    EXPECT_EQ(machine.commands().size(), 1);
}
