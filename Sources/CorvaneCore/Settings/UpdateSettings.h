// The user's settings of the update check, read anew at each call, and where this build looks for updates. A stored
// value of another type counts as absent. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/UserDefaults.h"
#include "CorvaneCore/Services/InfoDictionary.h"
#include "CorvaneCore/Services/UpdateManifest.h"

namespace corvane {

// Where a build looks that was not told where: under a name that is reserved for never existing, so that nobody is
// asked and nobody can take the name. A product sets the address of its own (docs/formats/info.md).
inline const QString defaultUpdateManifestURL = QStringLiteral("https://updates.corvane.invalid/manifest.json");

class UpdateSettings {
public:
    UpdateSettings(const UserDefaults& defaults, const InfoDictionary& info) : m_defaults(defaults), m_info(info) {}

    [[nodiscard]] bool automaticChecksEnabled() const; // true if absent
    [[nodiscard]] std::optional<QDateTime> lastCheckAt() const;
    [[nodiscard]] std::optional<UpdateManifest> cachedManifest() const; // nothing also if it does not decode
    // That of the dictionary as it stands there, the default if that is blank.
    [[nodiscard]] QString manifestURL() const;
    // Whether that is an address which somebody set.
    [[nodiscard]] bool hasOwnManifestURL() const { return manifestURL().trimmed() != defaultUpdateManifestURL; }

private:
    const UserDefaults& m_defaults;
    const InfoDictionary& m_info;
};

} // namespace corvane
