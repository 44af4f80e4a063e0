#include "CorvaneCore/Calls/DetectedCall.h"

#include "CorvaneContract/Text/UserText.h"

namespace corvane {

QString callProviderName(CallProvider provider) {
    switch (provider) {
    case CallProvider::googleMeet:
        return QStringLiteral("Google Meet");
    case CallProvider::zoom:
        return QStringLiteral("Zoom");
    case CallProvider::teams:
        return QStringLiteral("Microsoft Teams");
    case CallProvider::slack:
        break;
    }
    return QStringLiteral("Slack");
}

QString DetectedCall::subtitle() const {
    const QString name = callProviderName(provider);
    return title && !title->isEmpty() ? name + QStringLiteral(" - ") + *title
                                      : UserText::tr("%1 detected in %2.").arg(name, source);
}

QString DetectedCall::recordingTitle(const QDateTime& now) const {
    const QString trimmed = title.value_or(QString()).trimmed();
    return (trimmed.isEmpty() ? callProviderName(provider) : trimmed) +
           now.toLocalTime().toString(QStringLiteral(" yyyy-MM-dd HH:mm"));
}

} // namespace corvane
