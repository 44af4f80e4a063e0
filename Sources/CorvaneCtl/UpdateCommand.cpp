// corvanectl update
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCore/Services/UpdateText.h"
#include "CorvaneCtl/Actions.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/MeetingJson.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

namespace corvane::ctl {

namespace {

QString stateWord(UpdateCheckState::Kind kind) {
    switch (kind) {
    case UpdateCheckState::Kind::available:
        return QStringLiteral("available");
    case UpdateCheckState::Kind::unsupported:
        return QStringLiteral("unsupported");
    case UpdateCheckState::Kind::failed:
        return QStringLiteral("failed");
    case UpdateCheckState::Kind::checking:
        return QStringLiteral("checking");
    case UpdateCheckState::Kind::upToDate:
        return QStringLiteral("upToDate");
    case UpdateCheckState::Kind::idle:
        break;
    }
    return QStringLiteral("idle");
}

QJsonValue manifestJson(const std::optional<UpdateManifest>& manifest) {
    return manifest ? JsonDocument(encodeUpdateManifest(*manifest)).root().free().toQJson() : QJsonValue();
}

QJsonObject updatesJson(const UpdatesPart& updates) {
    const auto& last = updates.lastUpdateCheckAt();
    return {{QStringLiteral("state"), stateWord(updates.updateCheckState().kind)},
            {QStringLiteral("error"), textOrNull(updates.updateCheckErrorMessage())},
            {QStringLiteral("version"), updates.currentAppVersion().version},
            {QStringLiteral("build"), updates.currentAppVersion().build},
            {QStringLiteral("update"), manifestJson(updates.updateCheckState().manifest)},
            {QStringLiteral("manifestURL"), updates.settings().manifestURL().trimmed()},
            {QStringLiteral("automatic"), updates.automaticUpdateChecksEnabled()},
            {QStringLiteral("lastCheck"),
             textOrNull(last ? std::optional(last->toString(Qt::ISODateWithMs)) : std::nullopt)}};
}

// What the state is, and of a release where it lies.
QString stateText(const UpdateCheckState& state) {
    QString text = visibleText(updateStatusText(state));
    if (text.isEmpty())
        return {};
    text += QLatin1Char('\n');
    if (state.kind != UpdateCheckState::Kind::available)
        return text;
    if (const auto published = publishedText(*state.manifest, QLocale::system()))
        text += visibleText(*published) + QLatin1Char('\n');
    if (state.manifest->releaseNotes && !state.manifest->releaseNotes->isEmpty())
        text += QLatin1Char('\n') + visibleText(*state.manifest->releaseNotes, LineBreaks::kept).trimmed() +
                QStringLiteral("\n\n");
    const auto address = [](const QUrl& url) { return visibleText(QString::fromUtf8(url.toEncoded())); };
    std::vector<QStringList> rows{{QStringLiteral("Download"), address(state.manifest->downloadURL)},
                                  {QStringLiteral("SHA-256"), visibleText(state.manifest->sha256)}};
    if (state.manifest->releaseNotesURL)
        rows.push_back({QStringLiteral("Release notes"), address(*state.manifest->releaseNotesURL)});
    return text + tableText(rows);
}

ExitStatus show(Session& session) {
    const UpdatesPart& updates = session.model().updates();
    if (session.wantsJson()) {
        session.printJson(updatesJson(updates));
        return ExitStatus::ok;
    }
    const QString automatic = updates.automaticUpdateChecksEnabled() ? QStringLiteral("on") : QStringLiteral("off");
    session.terminal().print(currentVersionText(updates.currentAppVersion()) + QLatin1Char('\n') +
                             lastCheckedText(updates.lastUpdateCheckAt(), QLocale::system()) +
                             QStringLiteral("\nAutomatic checks: %1\nManifest: %2\n")
                                 .arg(automatic, visibleText(updates.settings().manifestURL().trimmed())) +
                             stateText(updates.updateCheckState()));
    return ExitStatus::ok;
}

ExitStatus check(Session& session) {
    static_cast<void>(actionOperands(session, 0, 0, "check"));
    AppModel& model = session.model();
    const bool couldTell = session.wait(model.checkForUpdates());
    const UpdatesPart& updates = model.updates();
    if (session.wantsJson())
        session.printJson(updatesJson(updates));
    else if (updates.updateCheckState().kind != UpdateCheckState::Kind::failed)
        session.terminal().print(stateText(updates.updateCheckState()));
    if (!couldTell)
        throw CtlError(visibleText(updates.updateCheckErrorMessage().value_or(QString())));
    return ExitStatus::ok;
}

ExitStatus automatic(Session& session) {
    const QStringList given = actionOperands(session, 0, 1, "automatic [on|off]");
    if (!given.isEmpty()) {
        if (given[0] != QLatin1String("on") && given[0] != QLatin1String("off"))
            throw UsageError(QStringLiteral("automatic is on or off, not “%1”").arg(given[0]));
        session.model().updateAutomaticUpdateChecksEnabled(given[0] == QLatin1String("on"));
    }
    return show(session);
}

} // namespace

ExitStatus runUpdate(Session& session) {
    session.model().restoreCachedUpdateState();
    const auto action = session.line().operand(0);
    if (!action)
        return show(session);
    if (*action == QLatin1String("check"))
        return check(session);
    if (*action == QLatin1String("automatic"))
        return automatic(session);
    throw UsageError(QStringLiteral("update can do check and automatic, not “%1”").arg(*action));
}

} // namespace corvane::ctl
