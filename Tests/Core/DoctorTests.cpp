// The local model over a service of every kind, and the doctor on a machine where everything hangs or nothing is there.
#include "Support/FakeHttpServer.h"
#include "Support/Fakes/FakeHttpClient.h"
#include "Support/MainLoop.h"
#include "Support/PrintQt.h"

#include "CorvaneCore/Services/Doctor.h"
#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"
#include "CorvanePlatform/Linux/Network/QtHttpClient.h"
#include "CorvanePlatform/Linux/Processes/LinuxProcessLauncher.h"
#include "CorvanePlatform/Null/NullAudioInputs.h"

#include <gtest/gtest.h>

#include <future>

using namespace std::chrono_literals;

namespace corvane {
namespace {

TEST(OllamaTest, OnlyAnAnswerInTheServicesOwnFormatIsARunningService) {
    HttpAnswer answer{.status = 200, .headers = {}, .body = {}};
    FakeHttpServer server([&answer](const ReceivedRequest&) { return answer; });
    QtHttpClient http;
    QObject asker;
    const auto stateOf = [&](bool isInstalled = false) {
        return ollamaStatus(isInstalled, loopedResult(detectOllamaService(http, asker, server.address()))).state;
    };
    for (const char* name : {"qwen3:1.7b", "qwen3:1.7b:latest"}) {
        answer.body = QByteArray(R"({"models":[{"name":"x"},{"name":")") + name + R"(","size":1}]})";
        EXPECT_EQ(stateOf(), OllamaState::ready) << name;
    }
    EXPECT_EQ(server.calls().front(), "GET /api/tags");
    for (const char* name : {"qwen3:1.7", "qwen3:1.7b-instruct", ""}) {
        answer.body = QByteArray(R"({"models":[{"name":")") + name + R"("}]})";
        EXPECT_EQ(stateOf(true), OllamaState::modelMissing) << name;
    }
    for (const char* nonsense :
         {"", "[]", "{}", R"({"models":{}})", R"({"models":[{"model":"qwen3:1.7b"}]})", "<html>"}) {
        answer.body = nonsense;
        EXPECT_EQ(stateOf(true), OllamaState::installed) << nonsense;
    }
    answer.body = R"({"models":[]})";
    for (const int status : {201, 404, 500}) {
        answer.status = status;
        EXPECT_EQ(stateOf(), OllamaState::missing) << status;
    }
    answer = {.status = 200, .headers = {}, .body = QByteArray(50 * 1024 * 1024, ' ')};
    EXPECT_EQ(stateOf(), OllamaState::missing);
    server.forget();
    server.faults = {{0, Fault::silent}};
    EXPECT_EQ(stateOf(), OllamaState::missing);
}

// Everything is fine, until it is told to hang: then no question is answered before it is released.
class FakeMachine final : public MachineProbe {
public:
    explicit FakeMachine(bool hangs) {
        if (!hangs)
            release();
    }
    void release() { m_released.set_value(); }

    KeyringFacts keyring() override { return answer(KeyringFacts{KeyringFacts::State::reachable, {}}); }
    SessionBusFacts sessionBus() override {
        return answer(SessionBusFacts{Presence::present, Presence::present, Presence::present, Presence::present});
    }
    WindowFacts windows() override {
        return answer(WindowFacts{{u":0"_s, Presence::present}, {}, FrontWindowTeller::x11, {}});
    }
    StorageFacts storage(const QString& directory) override { return answer(StorageFacts{directory, {}, 1LL << 40}); }
    std::optional<QString> program(const QString& name) override { return answer(std::optional(u"/bin/"_s + name)); }

private:
    template<typename T>
    T answer(T facts) {
        m_wait.wait();
        return facts;
    }

    std::promise<void> m_released;
    std::shared_future<void> m_wait = m_released.get_future().share();
};

class DoctorTest : public testing::Test {
protected:
    [[nodiscard]] DoctorOrders orders(const std::shared_ptr<MachineProbe>& machine) const {
        DoctorOrders result;
        result.machine = machine;
        result.audioInputs = std::make_shared<NullAudioInputs>();
        result.processes = std::make_shared<LinuxProcessLauncher>();
        result.http = http;
        result.files = std::make_shared<LinuxFileTree>();
        result.dataDirectory = u"/data"_s;
        result.worker = u"/bin/true"_s;
        result.isWorkerOfOurs = false;
        result.ollamaAddress = QUrl(ollamaAddress);
        result.programs = {u"uv"_s};
        return result;
    }
    static DoctorCheck named(const DoctorChecks& checks, const QString& id) {
        const auto check = std::find_if(checks.begin(), checks.end(), [&](const auto& one) { return one.id == id; });
        return check == checks.end() ? DoctorCheck() : *check;
    }

    std::shared_ptr<FakeHttpClient> http = std::make_shared<FakeHttpClient>([](const HttpRequest&) {
        return HttpAnswer{.status = 200, .headers = {}, .body = R"({"models":[{"name":"qwen3:1.7b"}]})"};
    });
    QObject asker;
};

TEST_F(DoctorTest, WhatIsNeededDecides) {
    auto what = orders(std::make_shared<FakeMachine>(false));
    DoctorChecks checks = loopedResult(examineMachine(what, asker));
    EXPECT_FALSE(isReady(checks)); // no sound
    EXPECT_EQ(named(checks, u"microphone"_s).state, DoctorCheck::State::missing);
    EXPECT_EQ(named(checks, u"worker"_s).state, DoctorCheck::State::ok);
    EXPECT_EQ(named(checks, u"ollama"_s).state, DoctorCheck::State::ok);
    for (const DoctorCheck& check : checks)
        EXPECT_EQ(check.remedy.isEmpty(), check.state == DoctorCheck::State::ok) << check.id.toStdString();
    what.worker = u"/bin/false"_s;
    EXPECT_EQ(named(loopedResult(examineMachine(what, asker)), u"worker"_s).state, DoctorCheck::State::problem);
}

TEST_F(DoctorTest, WhatHangsIsToldAndHoldsNothingUp) {
    const auto machine = std::make_shared<FakeMachine>(true);
    auto what = orders(machine);
    http->hold();
    const DoctorChecks checks = loopedResult(examineMachine(what, asker, 50ms));
    EXPECT_EQ(checks.size(), 14U);
    for (const char* id : {"data-directory", "keyring", "tray", "accessibility", "front-window", "ollama", "uv"})
        EXPECT_EQ(named(checks, QString(id)).state, DoctorCheck::State::problem) << id;
    EXPECT_EQ(named(checks, u"worker"_s).title, u"Worker");

    auto goesAway = std::make_unique<QObject>();
    const auto dropped = examineMachine(what, *goesAway);
    goesAway.reset();
    EXPECT_TRUE(dropped.isCanceled());
    machine->release();
}

TEST(DoctorCheckTest, LittleSpaceALockedKeyringAndABuildWithoutAnAddressAreTold) {
    const AudioDevice device{.id = u"m"_s, .name = u"Mic"_s, .isDefault = true, .format = {}};
    const DoctorChecks sound = checksOf(SoundFacts{AudioDevices{u"PipeWire"_s, {device}, {}}, {}});
    EXPECT_EQ(sound[0].detail, u"Mic, through PipeWire");
    EXPECT_EQ(sound[1].state, DoctorCheck::State::missing);
    EXPECT_TRUE(isReady({sound[0], updateCheckOf(u"https://updates.corvane.invalid/manifest.json"_s)}));
    EXPECT_FALSE(isReady(sound));
    EXPECT_EQ(updateCheckOf(u"https://updates.corvane.invalid/manifest.json"_s).state, DoctorCheck::State::missing);
    EXPECT_EQ(checksOf(StorageFacts{u"/d"_s, {}, 1 << 30})[0].state, DoctorCheck::State::problem);
    EXPECT_EQ(checksOf(StorageFacts{u"/d"_s, u"Read-only file system"_s, 1LL << 40})[0].detail,
              u"/d: Read-only file system");
    EXPECT_EQ(checksOf(KeyringFacts{KeyringFacts::State::locked, u"locked"_s})[0].state, DoctorCheck::State::problem);
}

} // namespace
} // namespace corvane
