// An AppModel over a real data directory, with the real file tree and fakes for the rest of the platform.
#pragma once

#include "Support/Fakes/FailingAudioFiles.h"
#include "Support/Fakes/FakeAudioFileInspector.h"
#include "Support/Fakes/FakeAudioInputs.h"
#include "Support/Fakes/FakeAudioPlayers.h"
#include "Support/Fakes/FakeCallNotices.h"
#include "Support/Fakes/FakeClock.h"
#include "Support/Fakes/FakeFrontmostApplicationReader.h"
#include "Support/Fakes/FakeProcessLauncher.h"
#include "Support/Fakes/FakeTokenStore.h"
#include "Support/Fakes/FakeWorkspace.h"
#include "Support/Fakes/InMemoryUserDefaults.h"
#include "Support/MainLoop.h"
#include "Support/PrintQt.h"

#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneCore/Settings/DefaultsKeys.h"
#include "CorvanePlatform/Linux/Files/LinuxFileTree.h"

#include <QCoreApplication>
#include <QFuture>

#include <memory>

namespace corvane {

class ModelFixture {
public:
    // No test asks for updates or for a local model, or is in its setup, unless it sets out to.
    explicit ModelFixture(AppPaths location) : m_paths(std::move(location)) {
        defaults->set(defaultsKeys::setupCompleted, true);
        defaults->set(defaultsKeys::updateAutomaticChecksEnabled, false);
    }

    std::shared_ptr<FakeTokenStore> tokens = std::make_shared<FakeTokenStore>();
    std::shared_ptr<InMemoryUserDefaults> defaults = std::make_shared<InMemoryUserDefaults>();
    std::shared_ptr<FakeProcessLauncher> processes = std::make_shared<FakeProcessLauncher>();
    std::shared_ptr<FakeAudioFileInspector> audioFiles = std::make_shared<FakeAudioFileInspector>();
    std::shared_ptr<FakeAudioInputs> audioInputs = std::make_shared<FakeAudioInputs>();
    std::shared_ptr<FailingAudioFiles> waveFiles = std::make_shared<FailingAudioFiles>();
    std::shared_ptr<FakeAudioPlayers> audioPlayers = std::make_shared<FakeAudioPlayers>();
    std::shared_ptr<FakeWorkspace> workspace = std::make_shared<FakeWorkspace>();
    std::shared_ptr<HttpClient> http; // brought by a test that needs one
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::shared_ptr<FakeFrontmostApplicationReader> frontmostApplication =
        std::make_shared<FakeFrontmostApplicationReader>();
    std::shared_ptr<FakeCallNotices> callNotices = std::make_shared<FakeCallNotices>();
    InfoDictionary info;
    OperatingSystemVersion systemVersion;
    QUrl ollamaAddress;
    std::vector<QString> ollamaLocations;
    Surface surface = Surface::window;
    QString worker; // an executable file, or "" for none

    // Starts the application, or starts it again.
    AppModel& start() {
        m_model.reset();
        AppServices services{.tokenStore = tokens,
                             .defaults = defaults,
                             .files = std::make_shared<LinuxFileTree>(),
                             .processes = processes,
                             .audioFiles = audioFiles,
                             .audioInputs = audioInputs,
                             .waveFiles = waveFiles,
                             .audioPlayers = audioPlayers,
                             .workspace = workspace,
                             .http = http,
                             .clock = clock,
                             .frontmostApplication = frontmostApplication,
                             .callNotices = callNotices,
                             .machine = nullptr,
                             .environment = {{u"CORVANE_WORKER_PATH"_s, worker}},
                             .currentDirectory = u"/nowhere"_s,
                             .bundleResourceDirectory = std::nullopt,
                             .info = info,
                             .systemVersion = systemVersion,
                             .ollamaAddress = ollamaAddress,
                             .ollamaLocations = ollamaLocations,
                             .speechModelDirectory = {},
                             .surface = surface};
        m_model = std::make_unique<AppModel>(m_paths, std::move(services));
        return *m_model;
    }
    void stop() { m_model.reset(); }

    // Runs the main loop until the condition holds; false if it never did.
    template<typename Condition>
    static bool until(Condition condition) {
        return loopUntil(condition);
    }
    template<typename T>
    static T resultOf(QFuture<T> future) {
        return loopedResult(future);
    }

private:
    AppPaths m_paths;
    std::unique_ptr<AppModel> m_model;
};

} // namespace corvane
