// Asks an update server for its manifest and decides what that means for this machine. It downloads nothing else and
// keeps nothing. A value, made anew for each check, on the main thread.
#pragma once

#include "CorvaneCore/Interfaces/HttpClient.h"
#include "CorvaneCore/Services/InfoDictionary.h"
#include "CorvaneCore/Services/UpdateAvailability.h"

#include <QObject>

namespace corvane {

struct UpdateChecker {
    QUrl manifestURL; // HTTP or HTTPS
    AppVersion currentVersion;
    OperatingSystemVersion currentMacOSVersion; // of the operating system here

    // Starts, and returns at once. The outcome is the availability or an UpdateCheckError, an HttpError (no usable
    // answer) or a JsonError (no manifest). `http` must outlive it, `context` is the object that asks.
    [[nodiscard]] QFuture<Outcome<UpdateAvailability>> check(HttpClient& http, QObject& context) const;

    // Throws UpdateCheckError for the first field that is blank.
    static void validate(const UpdateManifest& manifest);
    [[nodiscard]] static UpdateAvailability availability(const UpdateManifest& manifest,
                                                         const AppVersion& currentVersion,
                                                         const OperatingSystemVersion& currentMacOSVersion);
    // "0.0.0" and 0 where the dictionary does not say.
    [[nodiscard]] static AppVersion currentBundleVersion(const InfoDictionary& bundle);
};

} // namespace corvane
