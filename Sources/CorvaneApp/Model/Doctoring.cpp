#include "CorvaneApp/Model/Doctoring.h"

#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneCore/Jobs/WorkerLocator.h"
#include "CorvaneCore/Settings/UpdateSettings.h"

namespace corvane {

DoctorOrders doctorOrders(const AppServices& services, const QString& dataDirectory) {
    DoctorOrders orders;
    orders.machine = services.machine;
    orders.audioInputs = services.audioInputs;
    orders.processes = services.processes;
    orders.http = services.http;
    orders.files = services.files;
    orders.dataDirectory = dataDirectory;
    orders.worker =
        WorkerLocator{services.environment, services.currentDirectory, services.bundleResourceDirectory}.resolve();
    const auto override = services.environment.find(workerEnvironment::path);
    orders.isWorkerOfOurs = override == services.environment.end() || orders.worker != override->second;
    orders.speechModelDirectory = services.speechModelDirectory;
    orders.ollamaAddress = services.ollamaAddress;
    orders.ollamaLocations = services.ollamaLocations;
    orders.programs = {QStringLiteral("python3"), QStringLiteral("uv"), QStringLiteral("ffmpeg")};
    orders.manifestURL = UpdateSettings(*services.defaults, services.info).manifestURL();
    return orders;
}

} // namespace corvane
