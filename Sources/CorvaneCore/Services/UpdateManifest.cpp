#include "CorvaneCore/Services/UpdateManifest.h"

#include "CorvaneContract/Jobs/WorkerJobEvent.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneContract/Text/UserText.h"

namespace corvane {

namespace {

QUrl address(const JsonView& view, const char* key) {
    QUrl url(view.string(), QUrl::StrictMode);
    if (url.isEmpty() || !url.isValid())
        throw JsonError(UserText::tr("the value of \"%1\" is no address").arg(QLatin1String(key)));
    return url;
}

QDateTime date(const JsonView& view, const char* key) {
    auto moment = parseInternetDateTime(view.string());
    if (!moment)
        throw JsonError(UserText::tr("the value of \"%1\" is no date").arg(QLatin1String(key)));
    return *std::move(moment);
}

} // namespace

UpdateManifest decodeUpdateManifest(const QByteArray& json) {
    const JsonDocument document(json);
    const JsonObject object = document.root().object();
    UpdateManifest manifest;
    manifest.version = object.required("version").string();
    manifest.build = object.required("build").integer();
    if (const auto publishedAt = object.optional("publishedAt"))
        manifest.publishedAt = date(*publishedAt, "publishedAt");
    if (const auto minimum = object.optional("minimumMacOS"))
        manifest.minimumMacOS = minimum->string();
    manifest.downloadURL = address(object.required("downloadURL"), "downloadURL");
    if (const auto notes = object.optional("releaseNotesURL"))
        manifest.releaseNotesURL = address(*notes, "releaseNotesURL");
    if (const auto notes = object.optional("releaseNotes"))
        manifest.releaseNotes = notes->string();
    manifest.sha256 = object.required("sha256").string();
    return manifest;
}

QByteArray encodeUpdateManifest(const UpdateManifest& manifest) {
    QJsonObject object{{QStringLiteral("version"), manifest.version},
                       {QStringLiteral("build"), manifest.build},
                       {QStringLiteral("downloadURL"), QString::fromUtf8(manifest.downloadURL.toEncoded())},
                       {QStringLiteral("sha256"), manifest.sha256}};
    if (manifest.publishedAt)
        object.insert(QStringLiteral("publishedAt"), manifest.publishedAt->toUTC().toString(Qt::ISODate));
    if (manifest.minimumMacOS)
        object.insert(QStringLiteral("minimumMacOS"), *manifest.minimumMacOS);
    if (manifest.releaseNotesURL)
        object.insert(QStringLiteral("releaseNotesURL"), QString::fromUtf8(manifest.releaseNotesURL->toEncoded()));
    if (manifest.releaseNotes)
        object.insert(QStringLiteral("releaseNotes"), *manifest.releaseNotes);
    return compactJson(object);
}

} // namespace corvane
