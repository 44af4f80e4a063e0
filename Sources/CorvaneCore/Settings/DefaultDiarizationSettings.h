// The application's defaults for new meetings, read anew from the user defaults at each call, with every value made
// sound. A stored value of another type counts as absent. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/UserDefaults.h"
#include "CorvaneCore/Settings/DefaultsKeys.h"

#include <QString>

namespace corvane {

class DefaultDiarizationSettings {
public:
    explicit DefaultDiarizationSettings(const UserDefaults& defaults) : m_defaults(defaults) {}

    [[nodiscard]] qint64 speakerCount() const;              // 2 if absent; at least 1
    [[nodiscard]] bool diarizationEnabled() const;          // true if absent
    [[nodiscard]] QString speakerCountMode() const;         // "auto" if absent or not one of the three words
    [[nodiscard]] qint64 minSpeakerCount() const;           // 1 if absent; at least 1
    [[nodiscard]] qint64 maxSpeakerCount(qint64 min) const; // 8 if absent; at least `min`

private:
    const UserDefaults& m_defaults;
};

} // namespace corvane
