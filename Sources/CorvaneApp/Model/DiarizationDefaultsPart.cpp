#include "CorvaneApp/Model/DiarizationDefaultsPart.h"

#include "CorvaneCore/Settings/DefaultDiarizationSettings.h"

#include <algorithm>

namespace corvane {

DiarizationDefaultsPart::DiarizationDefaultsPart(std::shared_ptr<UserDefaults> defaults, QObject* parent)
    : ModelPart(parent), m_defaults(std::move(defaults)) {
    const DefaultDiarizationSettings stored(*m_defaults);
    m_enabled = stored.diarizationEnabled();
    m_mode = stored.speakerCountMode();
    m_count = stored.speakerCount();
    m_min = stored.minSpeakerCount();
    m_max = stored.maxSpeakerCount(m_min);
}

void DiarizationDefaultsPart::updateDefaultDiarizationEnabled(bool enabled) {
    publish(m_enabled, enabled, "defaultDiarizationEnabled",
            &DiarizationDefaultsPart::defaultDiarizationEnabledChanged);
    m_defaults->set(defaultsKeys::diarizationEnabled, m_enabled);
}

void DiarizationDefaultsPart::updateDefaultSpeakerCountMode(const QString& mode) {
    publish(m_mode, speakerCountMode::known(mode), "defaultSpeakerCountMode",
            &DiarizationDefaultsPart::defaultSpeakerCountModeChanged);
    m_defaults->set(defaultsKeys::speakerCountMode, m_mode);
}

void DiarizationDefaultsPart::updateDefaultSpeakerCount(qint64 count) {
    publish(m_count, std::max<qint64>(1, count), "defaultSpeakerCount",
            &DiarizationDefaultsPart::defaultSpeakerCountChanged);
    m_defaults->set(defaultsKeys::speakerCount, std::int64_t{m_count});
}

void DiarizationDefaultsPart::updateDefaultMinSpeakerCount(qint64 count) {
    publish(m_min, std::max<qint64>(1, std::min(count, m_max)), "defaultMinSpeakerCount",
            &DiarizationDefaultsPart::defaultMinSpeakerCountChanged);
    m_defaults->set(defaultsKeys::minSpeakerCount, std::int64_t{m_min});
}

void DiarizationDefaultsPart::updateDefaultMaxSpeakerCount(qint64 count) {
    publish(m_max, std::max(count, m_min), "defaultMaxSpeakerCount",
            &DiarizationDefaultsPart::defaultMaxSpeakerCountChanged);
    m_defaults->set(defaultsKeys::maxSpeakerCount, std::int64_t{m_max});
}

ProcessingSettings DiarizationDefaultsPart::appliedTo(ProcessingSettings present) const {
    present.diarizationEnabled = m_enabled;
    present.speakerCountMode = m_mode;
    present.speakerCount = m_count;
    present.minSpeakerCount = m_min;
    present.maxSpeakerCount = m_max;
    return present.withOrderedBounds();
}

} // namespace corvane
