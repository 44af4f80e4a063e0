// The one status line: every operation writes its outcome here, and the last writer wins.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneContract/Text/UserText.h"

#include <QString>

namespace corvane {

class StatusPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged)

public:
    using ModelPart::ModelPart;

    [[nodiscard]] const QString& statusMessage() const { return m_statusMessage; }
    void setStatusMessage(QString message) {
        publish(m_statusMessage, std::move(message), "statusMessage", &StatusPart::statusMessageChanged);
    }

Q_SIGNALS:
    void statusMessageChanged();

private:
    QString m_statusMessage = UserText::tr("Idle");
};

} // namespace corvane
