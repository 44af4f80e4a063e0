// The platform as the model needs it, handed in by the composition root. All are shared with background tasks where
// their interface allows another thread.
#pragma once

#include "CorvaneCore/Interfaces/AudioFileInspector.h"
#include "CorvaneCore/Interfaces/AudioFiles.h"
#include "CorvaneCore/Interfaces/AudioInput.h"
#include "CorvaneCore/Interfaces/AudioPlayer.h"
#include "CorvaneCore/Interfaces/CallNotice.h"
#include "CorvaneCore/Interfaces/Clock.h"
#include "CorvaneCore/Interfaces/FileTree.h"
#include "CorvaneCore/Interfaces/FrontmostApplication.h"
#include "CorvaneCore/Interfaces/HttpClient.h"
#include "CorvaneCore/Interfaces/MachineProbe.h"
#include "CorvaneCore/Interfaces/ProcessLauncher.h"
#include "CorvaneCore/Interfaces/SecretStoring.h"
#include "CorvaneCore/Interfaces/UserDefaults.h"
#include "CorvaneCore/Interfaces/Workspace.h"
#include "CorvaneCore/Services/AppVersion.h"
#include "CorvaneCore/Services/InfoDictionary.h"

#include <memory>
#include <optional>

namespace corvane {

// Who looks at the model: a window that shows all it holds, or a command that asks for one thing. For a command nothing
// is begun that it did not ask for: no voices are compared because a run is shown, no token store is asked, no call is
// looked for.
enum class Surface { window, command };

struct AppServices {
    std::shared_ptr<SecretStoring> tokenStore;
    std::shared_ptr<UserDefaults> defaults;
    std::shared_ptr<const FileTree> files;
    std::shared_ptr<ProcessLauncher> processes;
    std::shared_ptr<const AudioFileInspector> audioFiles;
    std::shared_ptr<AudioInputs> audioInputs;
    std::shared_ptr<AudioFiles> waveFiles;
    std::shared_ptr<AudioPlayers> audioPlayers;
    std::shared_ptr<Workspace> workspace;
    std::shared_ptr<HttpClient> http;
    std::shared_ptr<const Clock> clock;
    std::shared_ptr<FrontmostApplicationReader> frontmostApplication;
    std::shared_ptr<CallNotices> callNotices;
    std::shared_ptr<MachineProbe> machine;

    // Of the running process, for finding the worker.
    ProcessEnvironment environment;
    QString currentDirectory;
    std::optional<QString> bundleResourceDirectory;

    InfoDictionary info;                  // of this build
    OperatingSystemVersion systemVersion; // to hold against what an update requires
    QUrl ollamaAddress;                   // empty: nobody is asked
    std::vector<QString> ollamaLocations;
    QString speechModelDirectory; // of the worker that comes along

    // New and resumed recordings alike. A crash costs a part of the open chunk at most.
    double chunkDurationSeconds = 90.0;

    Surface surface = Surface::window;
};

} // namespace corvane
