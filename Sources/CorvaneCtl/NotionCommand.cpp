// corvanectl notion
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCore/Notion/NotionAddresses.h"
#include "CorvaneCore/Settings/DefaultsKeys.h"
#include "CorvaneCtl/Actions.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/SecretPrompt.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

namespace corvane::ctl {

namespace {

QString orNone(const QString& text) {
    return text.isEmpty() ? QStringLiteral("none") : visibleText(text);
}

ExitStatus showSettings(Session& session) {
    AppModel& model = session.model();
    const bool hasToken = session.wait(model.refreshNotionSettings());
    const NotionPart& notion = model.notion();
    const QString service =
        session.services().defaults->string(defaultsKeys::notionServiceURL).value_or(notionServiceURL().toString());
    if (session.wantsJson()) {
        session.printJson(QJsonObject{
            {QStringLiteral("service"), service},
            {QStringLiteral("hasToken"), hasToken},
            {QStringLiteral("database"), notion.notionDatabaseURL()},
            {QStringLiteral("title"), notion.notionDatabaseTitle()},
            {QStringLiteral("meetingID"), notion.notionMeetingIDPropertyName()},
            {QStringLiteral("participants"), notion.notionParticipantsPropertyName()},
            {QStringLiteral("summary"), notion.notionSummaryPropertyName()},
        });
        return ExitStatus::ok;
    }
    session.terminal().print(
        tableText({{QStringLiteral("Service"), visibleText(service)},
                   {QStringLiteral("Token"), hasToken ? QStringLiteral("stored") : QStringLiteral("none")},
                   {QStringLiteral("Database"), orNone(notion.notionDatabaseURL())},
                   {QStringLiteral("Title"), orNone(notion.notionDatabaseTitle())},
                   {QStringLiteral("Columns"), QStringLiteral("meeting-id: %1, participants: %2, summary: %3")
                                                   .arg(orNone(notion.notionMeetingIDPropertyName()),
                                                        orNone(notion.notionParticipantsPropertyName()),
                                                        orNone(notion.notionSummaryPropertyName()))}}));
    return ExitStatus::ok;
}

ExitStatus token(Session& session) {
    static_cast<void>(actionOperands(session, 0, 0, "token [--remove]"));
    if (session.line().has(QStringLiteral("remove"))) {
        requireDone(session, session.wait(session.model().deleteNotionToken()));
    } else {
        const auto secret = readSecret(QStringLiteral("Notion integration token: "));
        if (!secret)
            throw CtlError(QStringLiteral("no token was given"));
        requireDone(session, session.wait(session.model().saveNotionToken(*secret)));
    }
    session.terminal().say(session.model().status().statusMessage());
    return ExitStatus::ok;
}

ExitStatus database(Session& session) {
    const QStringList given = actionOperands(session, 0, 1, "database [URL]");
    if (given.isEmpty())
        return showSettings(session);
    AppModel& model = session.model();
    if (!notionDatabaseID(given[0]))
        throw CtlError(QStringLiteral("no database id stands in “%1”").arg(visibleText(given[0])));
    model.updateNotionDatabaseURL(given[0]);
    requireDone(session, session.wait(model.fetchNotionDatabaseTitle()));
    return showSettings(session);
}

ExitStatus columns(Session& session) {
    static_cast<void>(actionOperands(session, 0, 0, "columns"));
    AppModel& model = session.model();
    requireDone(session, session.wait(model.fetchNotionDatabaseTitle()));
    const auto& properties = model.notion().notionDatabaseProperties();
    if (session.wantsJson()) {
        session.printJson(encodeArray(properties, [](const NotionPropertyOption& property) {
            return QJsonObject{{QStringLiteral("name"), property.name}, {QStringLiteral("type"), property.type}};
        }));
        return ExitStatus::ok;
    }
    std::vector<QStringList> rows{{QStringLiteral("TYPE"), QStringLiteral("COLUMN")}};
    for (const NotionPropertyOption& property : properties)
        rows.push_back({visibleText(property.type), visibleText(property.name)});
    session.terminal().print(tableText(rows));
    return ExitStatus::ok;
}

ExitStatus map(Session& session) {
    const QStringList given = actionOperands(session, 2, 2, "map meeting-id|participants|summary COLUMN");
    NotionPart& notion = session.model().notion();
    if (given[0] == QLatin1String("meeting-id"))
        notion.updateNotionMeetingIDPropertyName(given[1]);
    else if (given[0] == QLatin1String("participants"))
        notion.updateNotionParticipantsPropertyName(given[1]);
    else if (given[0] == QLatin1String("summary"))
        notion.updateNotionSummaryPropertyName(given[1]);
    else
        throw UsageError(QStringLiteral("a column is for meeting-id, participants or summary, not “%1”").arg(given[0]));
    return session.wantsJson() ? showSettings(session) : ExitStatus::ok;
}

QString pendingText(const std::vector<NotionPageMatch>& pages) {
    QString text = QStringLiteral("Notion page already exists; --replace archives it, --new leaves it:");
    for (const NotionPageMatch& page : pages)
        text += QStringLiteral("\n  %1  %2")
                    .arg(visibleText(page.title), visibleText(page.url.isEmpty() ? notionPageURL(page.id) : page.url));
    return text;
}

ExitStatus sync(Session& session) {
    const QStringList given = actionOperands(session, 1, 1, "sync MEETING [--replace|--new]");
    const bool replaces = session.line().has(QStringLiteral("replace"));
    const bool createsNew = session.line().has(QStringLiteral("new"));
    if (replaces && createsNew)
        throw UsageError(QStringLiteral("--replace and --new exclude each other"));
    session.select(given[0]);
    AppModel& model = session.model();
    session.terminal().showLine(QStringLiteral("Syncing to Notion"));
    const bool done = session.wait(model.syncSelectedMeetingToNotion(replaces     ? AppModel::WhenPageExists::replace
                                                                     : createsNew ? AppModel::WhenPageExists::createNew
                                                                                  : AppModel::WhenPageExists::ask));
    session.terminal().clearProgress();
    if (!model.notion().pendingNotionReplacementPages().empty())
        throw CtlError(pendingText(model.notion().pendingNotionReplacementPages()));
    requireDone(session, done);
    const QString& url = model.notion().selectedNotionPageURL();
    if (session.wantsJson())
        session.printJson(QJsonObject{{QStringLiteral("url"), url}});
    else
        session.terminal().print(visibleText(url) + QLatin1Char('\n'));
    return ExitStatus::ok;
}

ExitStatus open(Session& session) {
    const QStringList given = actionOperands(session, 1, 1, "open MEETING");
    session.select(given[0]);
    AppModel& model = session.model();
    if (model.notion().selectedNotionPageURL().isEmpty())
        throw CtlError(QStringLiteral("no page of this meeting is known; corvanectl notion sync makes one"));
    if (!model.openSelectedNotionPage())
        throw CtlError(QStringLiteral("the page could not be opened: %1")
                           .arg(visibleText(model.notion().selectedNotionPageURL())));
    return ExitStatus::ok;
}

} // namespace

ExitStatus runNotion(Session& session) {
    const auto action = session.line().operand(0);
    if (!action)
        return showSettings(session);
    if (*action == QLatin1String("token"))
        return token(session);
    if (*action == QLatin1String("database"))
        return database(session);
    if (*action == QLatin1String("columns"))
        return columns(session);
    if (*action == QLatin1String("map"))
        return map(session);
    if (*action == QLatin1String("sync"))
        return sync(session);
    if (*action == QLatin1String("open"))
        return open(session);
    throw UsageError(
        QStringLiteral("notion can do token, database, columns, map, sync and open, not “%1”").arg(*action));
}

} // namespace corvane::ctl
