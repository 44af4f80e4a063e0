#include "Support/PrintQt.h"
#include "Support/PrivateSessionBus.h"

#include "CorvanePlatform/Linux/Doctor/LinuxMachineProbe.h"
#include "CorvanePlatform/Linux/Doctor/SessionBusProbe.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <signal.h>

using namespace std::chrono_literals;

namespace corvane {
namespace {

TEST(MachineProbeTest, ABareBusABusThatHangsAndNoBusAreThreeThings) {
    {
        const PrivateSessionBus bus;
        ASSERT_FALSE(bus.address().isEmpty());
        const SessionBusFacts bare = probeSessionBus(3s);
        EXPECT_EQ(bare.bus, Presence::present);
        EXPECT_EQ(bare.trayHost, Presence::absent);
        EXPECT_EQ(bare.notifications, Presence::absent);
        EXPECT_EQ(bare.accessibility, Presence::absent);
        EXPECT_EQ(LinuxMachineProbe().keyring().state, KeyringFacts::State::absent);
        ::kill(static_cast<pid_t>(bus.processID()), SIGSTOP);
        const SessionBusFacts hanging = probeSessionBus(100ms);
        EXPECT_EQ(hanging.trayHost, Presence::noAnswer);
        EXPECT_EQ(hanging.accessibility, Presence::noAnswer);
        ::kill(static_cast<pid_t>(bus.processID()), SIGCONT);
    }
}

TEST(MachineProbeTest, ADirectoryToBeMadeIsLookedAtWhereItWouldLie) {
    const QTemporaryDir directory;
    LinuxMachineProbe probe;
    const StorageFacts facts = probe.storage(directory.filePath(u"a/b"_s));
    EXPECT_EQ(facts.directory, directory.path());
    EXPECT_EQ(facts.error, std::nullopt);
    EXPECT_GT(facts.freeBytes, 0);
    EXPECT_TRUE(QDir(directory.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    EXPECT_NE(probe.storage(u"/proc/corvane"_s).error, std::nullopt);
    EXPECT_TRUE(probe.program(u"sh"_s));
    EXPECT_FALSE(probe.program(u"no-such-program"_s));
}

} // namespace
} // namespace corvane
