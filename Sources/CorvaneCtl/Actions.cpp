#include "CorvaneCtl/Actions.h"

#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

namespace corvane::ctl {

QStringList actionOperands(const Session& session, qsizetype minimum, qsizetype maximum, const char* form) {
    QStringList given = session.line().operands.mid(1);
    if (given.size() < minimum || given.size() > maximum)
        throw UsageError(
            QStringLiteral("it is: corvanectl %1 %2").arg(session.line().command, QString::fromUtf8(form)));
    return given;
}

void requireDone(Session& session, bool done) {
    if (!done)
        throw CtlError(visibleText(session.model().status().statusMessage()));
}

} // namespace corvane::ctl
