// corvanectl doctor
#include "CorvaneApp/Model/Doctoring.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

namespace corvane::ctl {

namespace {

QString stateWord(DoctorCheck::State state) {
    switch (state) {
    case DoctorCheck::State::ok:
        return QStringLiteral("ok");
    case DoctorCheck::State::missing:
        return QStringLiteral("missing");
    case DoctorCheck::State::problem:
        break;
    }
    return QStringLiteral("problem");
}

QJsonObject checkJson(const DoctorCheck& check) {
    return {{QStringLiteral("id"), check.id},
            {QStringLiteral("title"), check.title},
            {QStringLiteral("needed"), check.need == DoctorCheck::Need::needed},
            {QStringLiteral("purpose"), check.purpose},
            {QStringLiteral("state"), stateWord(check.state)},
            {QStringLiteral("detail"), check.detail},
            {QStringLiteral("remedy"), check.remedy}};
}

QString checkText(const DoctorCheck& check) {
    const bool isOptional = check.need == DoctorCheck::Need::optional;
    QString text = QStringLiteral("%1  %2  %3\n")
                       .arg(stateWord(check.state), -7)
                       .arg(check.title, -14)
                       .arg(visibleText(check.detail));
    if (check.state == DoctorCheck::State::ok)
        return text;
    const QString indent(9, QLatin1Char(' '));
    return text + indent + check.purpose + (isOptional ? QStringLiteral(" (optional)") : QString()) +
           QLatin1Char('\n') + indent + QStringLiteral("To get it: ") + check.remedy + QLatin1Char('\n');
}

} // namespace

ExitStatus runDoctor(Session& session) {
    QObject asker;
    const DoctorChecks checks =
        session.wait(examineMachine(doctorOrders(session.services(), session.paths().root), asker));
    const bool ready = isReady(checks);
    if (session.wantsJson()) {
        session.printJson(
            QJsonObject{{QStringLiteral("ready"), ready}, {QStringLiteral("checks"), encodeArray(checks, checkJson)}});
    } else {
        QString text;
        for (const DoctorCheck& check : checks)
            text += checkText(check);
        session.terminal().print(text + (ready ? QStringLiteral("Corvane has all that it needs.\n")
                                               : QStringLiteral("Corvane lacks something that it needs.\n")));
    }
    return ready ? ExitStatus::ok : ExitStatus::notReady;
}

} // namespace corvane::ctl
