// What a publisher says of the newest release; also the form in which the last one is kept. A value; any thread.
#pragma once

#include "CorvaneCore/Services/AppVersion.h"

#include <QByteArray>
#include <QDateTime>
#include <QUrl>

#include <optional>

namespace corvane {

struct UpdateManifest {
    QString version;
    qint64 build = 0;
    std::optional<QDateTime> publishedAt; // UTC
    std::optional<QString> minimumMacOS;  // the lowest version of the operating system, dotted
    QUrl downloadURL;
    std::optional<QUrl> releaseNotesURL;
    std::optional<QString> releaseNotes; // plain text
    QString sha256;                      // of the download; carried, never computed

    [[nodiscard]] AppVersion appVersion() const { return {version, build}; }

    friend bool operator==(const UpdateManifest&, const UpdateManifest&) = default;
};

// Throws JsonError. Keys that are not known are ignored.
[[nodiscard]] UpdateManifest decodeUpdateManifest(const QByteArray& json);
[[nodiscard]] QByteArray encodeUpdateManifest(const UpdateManifest& manifest);

} // namespace corvane
