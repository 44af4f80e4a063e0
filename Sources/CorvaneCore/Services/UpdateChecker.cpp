#include "CorvaneCore/Services/UpdateChecker.h"

#include "CorvaneCore/Services/UpdateCheckError.h"

#include <chrono>

namespace corvane {

using namespace std::chrono_literals;

namespace {

constexpr qint64 largestManifest = 1024 * 1024; // bytes; an honest one has a few hundred

UpdateManifest manifestIn(const HttpAnswer& answer) {
    constexpr int lowestStatus = 100;
    if (answer.status < lowestStatus)
        throw UpdateCheckError::invalidResponse();
    if (answer.status < 200 || answer.status > 299)
        throw UpdateCheckError::httpStatus(answer.status);
    UpdateManifest manifest = decodeUpdateManifest(answer.body);
    UpdateChecker::validate(manifest);
    return manifest;
}

} // namespace

QFuture<Outcome<UpdateAvailability>> UpdateChecker::check(HttpClient& http, QObject& context) const {
    const HttpRequest request{.method = QByteArrayLiteral("GET"),
                              .url = manifestURL,
                              .headers = {},
                              .body = std::nullopt,
                              .timeout = 10s,
                              .maximumAnswerBytes = largestManifest,
                              .redirects = HttpRedirects::notLessSafe};
    return http.send(request).then(&context, [checker = *this](const Outcome<HttpAnswer>& answer) {
        return outcomeOf([&] {
            return availability(manifestIn(answer.value()), checker.currentVersion, checker.currentMacOSVersion);
        });
    });
}

void UpdateChecker::validate(const UpdateManifest& manifest) {
    if (manifest.version.trimmed().isEmpty())
        throw UpdateCheckError::missingRequiredField("version");
    if (manifest.build < 1)
        throw UpdateCheckError::missingRequiredField("build");
    if (manifest.sha256.trimmed().isEmpty())
        throw UpdateCheckError::missingRequiredField("sha256");
}

UpdateAvailability UpdateChecker::availability(const UpdateManifest& manifest, const AppVersion& currentVersion,
                                               const OperatingSystemVersion& currentMacOSVersion) {
    if (!(currentVersion < manifest.appVersion()))
        return UpdateAvailability::upToDate();
    if (manifest.minimumMacOS && operatingSystemVersionIsOlderThan(currentMacOSVersion, *manifest.minimumMacOS))
        return UpdateAvailability::unsupported(manifest);
    return UpdateAvailability::available(manifest);
}

AppVersion UpdateChecker::currentBundleVersion(const InfoDictionary& bundle) {
    return {stringAt(bundle, infoKeys::version).value_or(QStringLiteral("0.0.0")),
            integerOrZero(stringAt(bundle, infoKeys::build).value_or(QStringLiteral("0")))};
}

} // namespace corvane
