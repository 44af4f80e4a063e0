// Whether the first-run setup has been gone through, which the user defaults keep, and whether its wizard is open.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneCore/Interfaces/UserDefaults.h"

#include <memory>

namespace corvane {

class SetupPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(bool isShowingSetupWizard READ isShowingSetupWizard NOTIFY isShowingSetupWizardChanged)

public:
    // The wizard is open until it has been finished once.
    explicit SetupPart(std::shared_ptr<UserDefaults> defaults, QObject* parent = nullptr);

    // Read anew each time.
    [[nodiscard]] bool setupCompleted() const;
    [[nodiscard]] bool isShowingSetupWizard() const { return m_isShowing; }

    void showSetupWizard() { setIsShowing(true); }
    // Does nothing before the setup was completed: until then the only way out is through.
    void closeSetupWizard();
    void completeSetup();

Q_SIGNALS:
    void isShowingSetupWizardChanged();

private:
    void setIsShowing(bool showing);

    std::shared_ptr<UserDefaults> m_defaults;
    bool m_isShowing;
};

} // namespace corvane
