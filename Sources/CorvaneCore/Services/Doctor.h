// Looks at everything that Corvane uses of a machine, all at the same time, each within its limit. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/HttpClient.h"
#include "CorvaneCore/Interfaces/ProcessLauncher.h"
#include "CorvaneCore/Services/DoctorCheck.h"

#include <QFuture>

#include <chrono>
#include <memory>

namespace corvane {

// What to look at and by what means.
struct DoctorOrders {
    std::shared_ptr<MachineProbe> machine;
    std::shared_ptr<AudioInputs> audioInputs;
    std::shared_ptr<ProcessLauncher> processes;
    std::shared_ptr<HttpClient> http;
    std::shared_ptr<const FileTree> files;

    QString dataDirectory;
    std::optional<QString> worker;
    bool isWorkerOfOurs = true;
    QString speechModelDirectory;
    QUrl ollamaAddress;
    std::vector<QString> ollamaLocations;
    QStringList programs; // that are only reported
    QString manifestURL;
};

// Returns at once. The checks come in a fixed order, also of what did not answer: that is left to itself when the limit
// has passed, and says so. What is under way when `context` goes is dropped.
[[nodiscard]] QFuture<DoctorChecks> examineMachine(const DoctorOrders& orders, QObject& context,
                                                   std::chrono::milliseconds limit = std::chrono::seconds(6));

} // namespace corvane
