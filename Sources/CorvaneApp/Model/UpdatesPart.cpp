#include "CorvaneApp/Model/UpdatesPart.h"

#include "CorvaneCore/Services/UpdateChecker.h"
#include "CorvaneCore/Settings/DefaultsKeys.h"

namespace corvane {

UpdatesPart::UpdatesPart(std::shared_ptr<UserDefaults> defaults, InfoDictionary info, QObject* parent)
    : ModelPart(parent),
      m_defaults(std::move(defaults)),
      m_info(std::move(info)),
      m_currentVersion(UpdateChecker::currentBundleVersion(m_info)),
      m_automaticChecks(settings().automaticChecksEnabled()),
      m_lastCheckAt(settings().lastCheckAt()) {}

void UpdatesPart::setAutomaticChecksEnabled(bool enabled) {
    publish(m_automaticChecks, enabled, "automaticUpdateChecksEnabled",
            &UpdatesPart::automaticUpdateChecksEnabledChanged);
    m_defaults->set(defaultsKeys::updateAutomaticChecksEnabled, enabled);
}

void UpdatesPart::setLastCheckAt(const QDateTime& moment) {
    publish(m_lastCheckAt, std::optional(moment), "lastUpdateCheckAt", &UpdatesPart::lastUpdateCheckAtChanged);
    m_defaults->set(defaultsKeys::updateLastCheckAt, moment);
}

void UpdatesPart::setState(UpdateCheckState state) {
    publish(m_state, std::move(state), "updateCheckState", &UpdatesPart::updateCheckStateChanged);
}

void UpdatesPart::setErrorMessage(const std::optional<QString>& message) {
    publish(m_errorMessage, message, "updateCheckErrorMessage", &UpdatesPart::updateCheckErrorMessageChanged);
}

void UpdatesPart::fail(const QString& message) {
    setErrorMessage(message);
    setState(UpdateCheckState::failed(message));
}

void UpdatesPart::persistManifest(const UpdateManifest& manifest) {
    m_defaults->set(defaultsKeys::updateCachedManifest, encodeUpdateManifest(manifest));
}

void UpdatesPart::forgetManifest() {
    m_defaults->remove(defaultsKeys::updateCachedManifest);
}

} // namespace corvane
