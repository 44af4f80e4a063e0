// Power and preferences over real buses, with services of the test's own.
#include "Support/MainLoop.h"
#include "Support/PrintQt.h"
#include "Support/PrivateSessionBus.h"

#include "CorvanePlatform/Linux/Desktop/DesktopPowerManagement.h"
#include "CorvanePlatform/Linux/Desktop/PortalDesktopPreferences.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMetaType>
#include <QScopeGuard>
#include <QThreadPool>

#include <gmock/gmock.h>
#include <poll.h>

#include <map>
#include <optional>

namespace corvane {

using SettingGroups = QMap<QString, QVariantMap>;

// The four services at once; a test takes the names that its desktop has.
class FakeDesktop final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    explicit FakeDesktop(const QString& address) : m_bus(QDBusConnection::connectToBus(address, u"fake-desktop"_s)) {
        m_bus.registerObject(u"/org/freedesktop/login1"_s, this, exported);
    }
    ~FakeDesktop() override { QDBusConnection::disconnectFromBus(u"fake-desktop"_s); }
    bool take(const char* name) { return m_bus.registerService(QString::fromLatin1(name)); }
    QDBusConnection& bus() { return m_bus; }

    // Whether anybody holds the other end of what Inhibit gave.
    [[nodiscard]] bool isHeld(const QString& what) const {
        const auto end = m_ends.find(what);
        pollfd waiting{.fd = end == m_ends.end() ? -1 : end->second.fileDescriptor(), .events = 0, .revents = 0};
        return waiting.fd >= 0 && ::poll(&waiting, 1, 0) == 0;
    }
    static constexpr auto exported = QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals;

public Q_SLOTS:
    QDBusUnixFileDescriptor Inhibit(const QString& what, const QString&, const QString& why, const QString& mode) {
        reason = why;
        modes[what] = mode;
        int ends[2];
        if (::pipe(ends) != 0)
            return {};
        QDBusUnixFileDescriptor kept, given;
        kept.giveFileDescriptor(ends[0]);
        given.giveFileDescriptor(ends[1]);
        m_ends[what] = kept;
        return given;
    }

Q_SIGNALS:
    void PrepareForShutdown(bool isStarting);

public:
    QString reason;
    std::map<QString, QString> modes;

private:
    QDBusConnection m_bus;
    std::map<QString, QDBusUnixFileDescriptor> m_ends; // read by nobody: hung up when the other is closed
};

class FakeInhibit final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    QList<uint> given, taken;

public Q_SLOTS:
    uint Inhibit(const QString&, const QString&) {
        given.append(static_cast<uint>(given.size()) + 7);
        return given.last();
    }
    void UnInhibit(uint cookie) { taken.append(cookie); }
};

class FakePortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    SettingGroups groups;

public Q_SLOTS:
    corvane::SettingGroups ReadAll(const QStringList&) { return groups; }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);
};

namespace {

class DesktopServicesTest : public testing::Test {
protected:
    DesktopServicesTest() {
        qDBusRegisterMetaType<SettingGroups>();
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    }
    ~DesktopServicesTest() override { qunsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }

    PrivateSessionBus bus;
    FakeDesktop desktop{bus.address()};
};

TEST_F(DesktopServicesTest, LogindKeepsTheMachineAwakeUntilTheRelease) {
    ASSERT_TRUE(desktop.take("org.freedesktop.login1"));
    DesktopPowerManagement power;
    int shutdowns = 0;
    QObject::connect(&power, &PowerManagement::shuttingDown, [&] { ++shutdowns; });
    const auto holds = [&] { return desktop.isHeld(u"sleep:idle"_s) && desktop.isHeld(u"shutdown"_s); };
    for (int i = 0; i < 2; ++i) {
        power.keepAwake(u"why"_s);
        power.keepAwake(u"again"_s);
        ASSERT_TRUE(loopUntil(holds));
        EXPECT_EQ(desktop.reason, u"why"_s);
        EXPECT_EQ(desktop.modes[u"sleep:idle"_s], u"block"_s);
        EXPECT_EQ(desktop.modes[u"shutdown"_s], u"delay"_s);
        power.release();
        ASSERT_TRUE(loopUntil([&] { return !holds(); }));
    }
    power.keepAwake(u"why"_s);
    power.release(); // before the answer
    power.keepAwake(u"why"_s);
    ASSERT_TRUE(loopUntil(holds));
    ASSERT_TRUE(loopUntil([&] { return power.isHeldBySystem(); })) << "before that it believes nobody";
    Q_EMIT desktop.PrepareForShutdown(false);
    Q_EMIT desktop.PrepareForShutdown(true);
    ASSERT_TRUE(loopUntil([&] { return shutdowns == 1; }));
    power.release();
    EXPECT_TRUE(loopUntil([&] { return !holds(); })) << "also of a wish that was taken back nothing stays";
}

TEST_F(DesktopServicesTest, WhereLogindIsNotTheDesktopDoes) {
    FakeInhibit saver;
    ASSERT_TRUE(desktop.bus().registerObject(u"/org/freedesktop/ScreenSaver"_s, &saver, FakeDesktop::exported));
    ASSERT_TRUE(desktop.take("org.freedesktop.ScreenSaver"));
    DesktopPowerManagement power;
    power.keepAwake(u"why"_s);
    ASSERT_TRUE(loopUntil([&] { return saver.given.size() == 1; }));
    power.release();
    ASSERT_TRUE(loopUntil([&] { return saver.taken == saver.given; }));
}

TEST_F(DesktopServicesTest, ThePortalTellsThePreferencesAndTheirChanges) {
    FakePortal portal;
    portal.groups[u"org.freedesktop.appearance"_s][u"color-scheme"_s] = 1U;
    portal.groups[u"org.gnome.desktop.interface"_s][u"enable-animations"_s] = false;
    ASSERT_TRUE(desktop.bus().registerObject(u"/org/freedesktop/portal/desktop"_s, &portal, FakeDesktop::exported));
    ASSERT_TRUE(desktop.take("org.freedesktop.portal.Desktop"));
    PortalDesktopPreferences preferences;
    EXPECT_FALSE(preferences.isKnown());
    ASSERT_TRUE(loopUntil([&] { return preferences.isKnown(); }));
    EXPECT_EQ(preferences.colorScheme(), ColorScheme::dark);
    EXPECT_TRUE(preferences.isMotionReduced());

    int changes = 0;
    QObject::connect(&preferences, &DesktopPreferences::changed, [&] { ++changes; });
    Q_EMIT portal.SettingChanged(u"org.freedesktop.appearance"_s, u"accent-color"_s, QDBusVariant(1U));
    Q_EMIT portal.SettingChanged(u"org.gnome.desktop.interface"_s, u"enable-animations"_s, QDBusVariant(true));
    Q_EMIT portal.SettingChanged(u"org.freedesktop.appearance"_s, u"color-scheme"_s, QDBusVariant(2U));
    ASSERT_TRUE(loopUntil([&] { return changes == 2; }));
    EXPECT_EQ(preferences.colorScheme(), ColorScheme::light);
    EXPECT_FALSE(preferences.isMotionReduced());
}

TEST_F(DesktopServicesTest, TheEnvironmentStandsAboveThePortal) {
    const auto restore = qScopeGuard([] {
        qunsetenv("CORVANE_COLOR_SCHEME");
        qunsetenv("CORVANE_REDUCED_MOTION");
    });
    qputenv("CORVANE_COLOR_SCHEME", "dark");
    qputenv("CORVANE_REDUCED_MOTION", "1");
    const PortalDesktopPreferences preferences;
    EXPECT_TRUE(preferences.isKnown());
    EXPECT_EQ(preferences.colorScheme(), ColorScheme::dark);
    EXPECT_TRUE(preferences.isMotionReduced());
}

TEST_F(DesktopServicesTest, WithoutServicesOrBusesNothingIsKnownAndNothingHappens) {
    const auto ask = [] {
        const PortalDesktopPreferences preferences;
        DesktopPowerManagement power;
        power.keepAwake(u"why"_s);
        EXPECT_TRUE(loopUntil([&] { return preferences.isKnown(); }));
        EXPECT_EQ(preferences.colorScheme(), ColorScheme::noPreference);
        power.release();
    };
    ask();
    for (const char* address : {"unix:path=/nowhere/bus", "disabled:"}) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
        ask();
    }
    QThreadPool::globalInstance()->waitForDone();
}

} // namespace
} // namespace corvane

#include "DesktopServicesTests.moc"
