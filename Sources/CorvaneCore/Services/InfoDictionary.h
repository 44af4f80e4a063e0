// What a build of Corvane says of itself: its version, its build number, where it looks for updates. It comes with the
// program, and a packager may put a file beside it (docs/formats/info.md). A value; any thread.
#pragma once

#include "CorvaneContract/Json/JSONValue.h"

namespace corvane {

using InfoDictionary = JSONValue::Object;

namespace infoKeys {
inline const QString version = QStringLiteral("CFBundleShortVersionString");
inline const QString build = QStringLiteral("CFBundleVersion"); // a string of digits
inline const QString updateManifestURL = QStringLiteral("CorvaneUpdateManifestURL");
// The distribution, as os-release has its ID, whose versions the manifest's requirements are.
inline const QString updateSystem = QStringLiteral("CorvaneUpdateSystem");
} // namespace infoKeys

inline const QString infoFile = QStringLiteral("info.json");

// The entries of a file over those that were built in. A file that is missing or no JSON object changes nothing.
[[nodiscard]] InfoDictionary withEntriesOfFile(InfoDictionary builtIn, const QString& path);

} // namespace corvane
