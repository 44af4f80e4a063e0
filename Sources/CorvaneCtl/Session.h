// What a command works with: what was typed, the streams, and the model, which is made when a command first asks for
// it. A command runs to its end inside run(); where it waits, it runs the one event loop of the program. Main thread.
#pragma once

#include "CorvaneApp/Composition/TerminationSignals.h"
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneCtl/CommandLine.h"
#include "CorvaneCtl/CtlError.h"
#include "CorvaneCtl/Terminal.h"

#include <QEventLoop>
#include <QFutureWatcher>
#include <QJsonArray>
#include <QJsonObject>

#include <functional>
#include <memory>

namespace corvane::ctl {

class Session {
public:
    Session(CommandLine line, AppServices services, Terminal& terminal);
    ~Session();

    [[nodiscard]] const CommandLine& line() const { return m_line; }
    [[nodiscard]] Terminal& terminal() { return m_terminal; }
    [[nodiscard]] const AppServices& services() const { return m_services; }
    [[nodiscard]] bool wantsJson() const { return m_line.has(QStringLiteral("json")); }

    // Without making them, unlike model().
    [[nodiscard]] const AppPaths& paths() const { return m_paths; }

    // Throws CtlError at the first call if the data directory cannot be used: the model itself would go on with an
    // empty list.
    [[nodiscard]] AppModel& model();

    // The meeting that an operand names, the newest without one. Throws CtlError.
    [[nodiscard]] MeetingListItem meeting(const std::optional<QString>& words);
    // The same, and shown by the model.
    MeetingListItem select(const std::optional<QString>& words);

    void printJson(const QJsonObject& object);
    void printJson(const QJsonArray& array);
    void printJsonLine(const QJsonObject& object); // of a stream of them

    // Runs the event loop until `future` has finished and gives its result. Throws Interrupted when a signal comes
    // first. With `onInterrupt`, which answers the first signal, the wait then goes on to the work's end or a second
    // one, and a result that there is all the same is given; see throwIfInterrupted().
    template<typename T>
    [[nodiscard]] T wait(const QFuture<T>& future, const std::function<void()>& onInterrupt = {}) {
        QFutureWatcher<T> watcher;
        runLoop(
            [&](QEventLoop& loop) {
                QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop, &QEventLoop::quit);
                watcher.setFuture(future);
            },
            onInterrupt);
        if (!future.isFinished())
            throwIfInterrupted();
        return future.result();
    }

    // From here on a signal ends a wait and not the program; every wait begins with it.
    void watchSignals();
    // Whether a signal has come since then.
    [[nodiscard]] bool isInterrupted() const { return m_signals && m_signals->last(); }
    // A signal until now was a wish that has been granted; the next wait does not end because of it.
    void forgetInterruption();
    // Throws Interrupted if one has.
    void throwIfInterrupted() const;

    // Runs the event loop until what `start` sets up ends it, or a signal does. Throws Interrupted if one had come
    // before.
    void runLoop(const std::function<void(QEventLoop&)>& start, const std::function<void()>& onInterrupt = {});

private:
    CommandLine m_line;
    AppServices m_services;
    Terminal& m_terminal;
    AppPaths m_paths;
    std::unique_ptr<TerminationSignals> m_signals;
    std::unique_ptr<AppModel> m_model;
};

} // namespace corvane::ctl
