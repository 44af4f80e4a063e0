#include "CorvaneApp/Model/SetupPart.h"

#include "CorvaneCore/Settings/DefaultsKeys.h"

namespace corvane {

SetupPart::SetupPart(std::shared_ptr<UserDefaults> defaults, QObject* parent)
    : ModelPart(parent), m_defaults(std::move(defaults)), m_isShowing(!setupCompleted()) {}

bool SetupPart::setupCompleted() const {
    return m_defaults->boolean(defaultsKeys::setupCompleted).value_or(false);
}

void SetupPart::closeSetupWizard() {
    if (setupCompleted())
        setIsShowing(false);
}

void SetupPart::completeSetup() {
    m_defaults->set(defaultsKeys::setupCompleted, true);
    setIsShowing(false);
}

void SetupPart::setIsShowing(bool showing) {
    publish(m_isShowing, showing, "isShowingSetupWizard", &SetupPart::isShowingSetupWizardChanged);
}

} // namespace corvane
