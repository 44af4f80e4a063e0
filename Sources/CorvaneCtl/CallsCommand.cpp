// corvanectl calls
#include "CorvaneCore/Calls/ActiveCallDetector.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/MeetingJson.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <QTime>
#include <QTimer>

#include <chrono>
#include <utility>

namespace corvane::ctl {

namespace {

constexpr std::chrono::milliseconds pollInterval{2000}; // as the application looks

using Facts = std::optional<FrontmostApplication>;

QJsonValue callJson(const std::optional<DetectedCall>& call) {
    if (!call)
        return QJsonValue::Null;
    return QJsonObject{{QStringLiteral("provider"), callProviderName(call->provider)},
                       {QStringLiteral("title"), textOrNull(call->title)},
                       {QStringLiteral("source"), call->source}};
}

QJsonValue tabJson(const std::optional<BrowserTab>& tab) {
    if (!tab)
        return QJsonValue::Null;
    return QJsonObject{{QStringLiteral("url"), tab->url}, {QStringLiteral("title"), tab->title}};
}

QJsonValue factsJson(const Facts& facts) {
    if (!facts)
        return QJsonValue::Null;
    return QJsonObject{{QStringLiteral("application"), facts->bundleIdentifier},
                       {QStringLiteral("name"), textOrNull(facts->localizedName)},
                       {QStringLiteral("window"), textOrNull(facts->windowTitle)},
                       {QStringLiteral("tab"), tabJson(facts->activeTab)}};
}

QString shown(const std::optional<QString>& text) {
    return text && !text->isEmpty() ? visibleText(*text) : QStringLiteral("-");
}

QString callText(const std::optional<DetectedCall>& call) {
    if (!call)
        return QStringLiteral("no call\n");
    return tableText({{callProviderName(call->provider), shown(call->title), shown(call->source)}});
}

QString factsText(const Facts& facts) {
    if (!facts)
        return QStringLiteral("nothing is in front, or the desktop does not tell\n");
    const auto& tab = facts->activeTab;
    std::vector<QStringList> rows{{QStringLiteral("application"), shown(facts->bundleIdentifier)},
                                  {QStringLiteral("name"), shown(facts->localizedName)},
                                  {QStringLiteral("window"), shown(facts->windowTitle)},
                                  {QStringLiteral("tab"), tab ? shown(tab->title) : QStringLiteral("not read")}};
    if (tab)
        rows.push_back({QStringLiteral("address"), shown(tab->url)});
    return QStringLiteral("in front\n") + tableText(rows);
}

// Looks as often as the application does, by the same rules, and prints what has changed.
class CallWatch final : public QObject {
public:
    CallWatch(Session& session, QEventLoop& loop) : m_session(session), m_loop(loop) {
        connect(&m_timer, &QTimer::timeout, this, &CallWatch::poll);
        connect(&m_answer, &QFutureWatcherBase::finished, this, &CallWatch::take);
        m_timer.start(pollInterval);
        poll();
    }

private:
    void poll() {
        if (std::exchange(m_isAsking, true))
            return;
        m_answer.setFuture(m_session.services().frontmostApplication->read());
    }

    void take() {
        m_isAsking = false;
        const QFuture<Facts> answer = m_answer.future();
        const Facts facts = answer.isCanceled() || answer.resultCount() == 0 ? Facts() : answer.result();
        const auto call = facts ? ActiveCallDetector::detectCall(*facts) : std::nullopt;
        const bool wantsFacts = m_session.line().has(QStringLiteral("facts"));
        const bool newFacts = wantsFacts && (!m_hasPrinted || facts != m_facts);
        const bool newCall = !m_hasPrinted || call != m_call;
        m_facts = facts;
        m_call = call;
        m_hasPrinted = true;
        if (m_session.wantsJson() && (newFacts || newCall))
            printJson(wantsFacts);
        else if (newFacts)
            print(factsText(m_facts));
        if (newCall && !m_session.wantsJson())
            print(callText(m_call));
        if (m_session.terminal().hasLostOutput())
            m_loop.quit(); // nobody reads it any more
    }

    void printJson(bool wantsFacts) {
        QJsonObject line{{QStringLiteral("call"), callJson(m_call)}};
        if (wantsFacts)
            line.insert(QStringLiteral("facts"), factsJson(m_facts));
        m_session.printJsonLine(line);
    }

    void print(const QString& text) {
        m_session.terminal().print(QTime::currentTime().toString(QStringLiteral("HH:mm:ss  ")) + text);
    }

    Session& m_session;
    QEventLoop& m_loop;
    QTimer m_timer;
    bool m_isAsking = false;
    QFutureWatcher<Facts> m_answer;
    bool m_hasPrinted = false;
    Facts m_facts;
    std::optional<DetectedCall> m_call;
};

} // namespace

ExitStatus runCalls(Session& session) {
    if (session.line().operand(0) != QLatin1String("watch"))
        throw UsageError(QStringLiteral("it is: corvanectl calls watch"));
    std::unique_ptr<CallWatch> watch;
    // A signal is the ordinary end.
    session.runLoop([&](QEventLoop& loop) { watch = std::make_unique<CallWatch>(session, loop); });
    return ExitStatus::ok;
}

} // namespace corvane::ctl
