// What is known of newer releases, and the user's settings of looking for them. The settings, the time of the last
// check and the last manifest are kept in the user defaults.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneCore/Interfaces/UserDefaults.h"
#include "CorvaneCore/Services/UpdateAvailability.h"
#include "CorvaneCore/Settings/UpdateSettings.h"

#include <memory>
#include <optional>

namespace corvane {

class UpdatesPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(
        bool automaticUpdateChecksEnabled READ automaticUpdateChecksEnabled NOTIFY automaticUpdateChecksEnabledChanged)

public:
    UpdatesPart(std::shared_ptr<UserDefaults> defaults, InfoDictionary info, QObject* parent = nullptr);

    [[nodiscard]] const AppVersion& currentAppVersion() const { return m_currentVersion; }
    [[nodiscard]] bool automaticUpdateChecksEnabled() const { return m_automaticChecks; }
    [[nodiscard]] const std::optional<QDateTime>& lastUpdateCheckAt() const { return m_lastCheckAt; }
    [[nodiscard]] const UpdateCheckState& updateCheckState() const { return m_state; }
    [[nodiscard]] const std::optional<QString>& updateCheckErrorMessage() const { return m_errorMessage; }
    [[nodiscard]] UpdateSettings settings() const { return {*m_defaults, m_info}; }

    void setAutomaticChecksEnabled(bool enabled);
    void setLastCheckAt(const QDateTime& moment);
    void setState(UpdateCheckState state);
    void setErrorMessage(const std::optional<QString>& message);
    // The message, also as the state.
    void fail(const QString& message);
    void persistManifest(const UpdateManifest& manifest);
    void forgetManifest();

Q_SIGNALS:
    void automaticUpdateChecksEnabledChanged();
    void lastUpdateCheckAtChanged();
    void updateCheckStateChanged();
    void updateCheckErrorMessageChanged();

private:
    std::shared_ptr<UserDefaults> m_defaults;
    InfoDictionary m_info;
    AppVersion m_currentVersion;
    bool m_automaticChecks;
    std::optional<QDateTime> m_lastCheckAt;
    UpdateCheckState m_state;
    std::optional<QString> m_errorMessage;
};

} // namespace corvane
