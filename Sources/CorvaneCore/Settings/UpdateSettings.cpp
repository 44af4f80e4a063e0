#include "CorvaneCore/Settings/UpdateSettings.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneCore/Settings/DefaultsKeys.h"

namespace corvane {

bool UpdateSettings::automaticChecksEnabled() const {
    return m_defaults.boolean(defaultsKeys::updateAutomaticChecksEnabled).value_or(true);
}

std::optional<QDateTime> UpdateSettings::lastCheckAt() const {
    return m_defaults.date(defaultsKeys::updateLastCheckAt);
}

std::optional<UpdateManifest> UpdateSettings::cachedManifest() const {
    const auto data = m_defaults.data(defaultsKeys::updateCachedManifest);
    if (!data)
        return std::nullopt;
    try {
        return decodeUpdateManifest(*data);
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

QString UpdateSettings::manifestURL() const {
    const auto own = stringAt(m_info, infoKeys::updateManifestURL);
    return own && !own->trimmed().isEmpty() ? *own : defaultUpdateManifestURL;
}

} // namespace corvane
