#include "CorvaneCore/Settings/DefaultDiarizationSettings.h"

#include "CorvaneCore/Library/MeetingMetadata.h"

#include <algorithm>

namespace corvane {

qint64 DefaultDiarizationSettings::speakerCount() const {
    return std::max<qint64>(1, m_defaults.integer(defaultsKeys::speakerCount).value_or(2));
}

bool DefaultDiarizationSettings::diarizationEnabled() const {
    return m_defaults.boolean(defaultsKeys::diarizationEnabled).value_or(true);
}

QString DefaultDiarizationSettings::speakerCountMode() const {
    return corvane::speakerCountMode::known(m_defaults.string(defaultsKeys::speakerCountMode).value_or(QString()));
}

qint64 DefaultDiarizationSettings::minSpeakerCount() const {
    return std::max<qint64>(1, m_defaults.integer(defaultsKeys::minSpeakerCount).value_or(1));
}

qint64 DefaultDiarizationSettings::maxSpeakerCount(qint64 min) const {
    return std::max<qint64>(min, m_defaults.integer(defaultsKeys::maxSpeakerCount).value_or(8));
}

} // namespace corvane
