// The application's defaults for new meetings. Each operation corrects the value, stores it in the field and writes it
// to the user defaults at once; the settings of the selected meeting stay as they are.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneCore/Interfaces/UserDefaults.h"
#include "CorvaneCore/Library/MeetingMetadata.h"

#include <memory>

namespace corvane {

class DiarizationDefaultsPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(bool defaultDiarizationEnabled READ defaultDiarizationEnabled NOTIFY defaultDiarizationEnabledChanged)
    Q_PROPERTY(QString defaultSpeakerCountMode READ defaultSpeakerCountMode NOTIFY defaultSpeakerCountModeChanged)
    Q_PROPERTY(qint64 defaultSpeakerCount READ defaultSpeakerCount NOTIFY defaultSpeakerCountChanged)
    Q_PROPERTY(qint64 defaultMinSpeakerCount READ defaultMinSpeakerCount NOTIFY defaultMinSpeakerCountChanged)
    Q_PROPERTY(qint64 defaultMaxSpeakerCount READ defaultMaxSpeakerCount NOTIFY defaultMaxSpeakerCountChanged)

public:
    explicit DiarizationDefaultsPart(std::shared_ptr<UserDefaults> defaults, QObject* parent = nullptr);

    [[nodiscard]] bool defaultDiarizationEnabled() const { return m_enabled; }
    [[nodiscard]] const QString& defaultSpeakerCountMode() const { return m_mode; }
    [[nodiscard]] qint64 defaultSpeakerCount() const { return m_count; }
    [[nodiscard]] qint64 defaultMinSpeakerCount() const { return m_min; }
    [[nodiscard]] qint64 defaultMaxSpeakerCount() const { return m_max; }

    void updateDefaultDiarizationEnabled(bool enabled);
    void updateDefaultSpeakerCountMode(const QString& mode); // a word other than the three becomes "auto"
    void updateDefaultSpeakerCount(qint64 count);            // at least 1
    void updateDefaultMinSpeakerCount(qint64 count);         // at most the upper bound, then at least 1
    void updateDefaultMaxSpeakerCount(qint64 count);         // at least the lower bound

    // The defaults as a new meeting takes them; `present` gives what they do not set. The bounds are in order.
    [[nodiscard]] ProcessingSettings appliedTo(ProcessingSettings present) const;

Q_SIGNALS:
    void defaultDiarizationEnabledChanged();
    void defaultSpeakerCountModeChanged();
    void defaultSpeakerCountChanged();
    void defaultMinSpeakerCountChanged();
    void defaultMaxSpeakerCountChanged();

private:
    std::shared_ptr<UserDefaults> m_defaults;
    bool m_enabled;
    QString m_mode;
    qint64 m_count;
    qint64 m_min;
    qint64 m_max;
};

} // namespace corvane
