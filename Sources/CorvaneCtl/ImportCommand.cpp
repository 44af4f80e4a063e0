// corvanectl import
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

#include <QElapsedTimer>
#include <QFileInfo>

namespace corvane::ctl {

namespace {

constexpr qint64 silentMilliseconds = 500; // what is copied sooner needs no progress bar

const QString failurePrefix = QStringLiteral("Failed to import audio: ");

std::optional<MeetingListItem> importOne(Session& session, const QString& file) {
    AppModel& model = session.model();
    QElapsedTimer clock;
    clock.start();
    const auto shown = QObject::connect(&model.library(), &LibraryPart::importProgressChanged, &model, [&] {
        const auto& fraction = model.library().importProgress();
        if (fraction && clock.hasExpired(silentMilliseconds))
            session.terminal().showProgress(*fraction, static_cast<double>(clock.elapsed()) / 1000.0,
                                            lastPathComponent(file));
    });
    const auto id = session.wait(model.importAudioFile(file), [&model] { model.cancelImports(); });
    QObject::disconnect(shown);
    session.terminal().clearProgress();
    auto meeting = id ? model.library().find(*id) : std::nullopt;
    if (!meeting) {
        QString reason = model.status().statusMessage();
        if (reason.startsWith(failurePrefix))
            reason.remove(0, failurePrefix.size());
        session.terminal().complain(reason);
    } else if (!session.services().audioFiles->durationSeconds(file)) {
        session.terminal().complain(QStringLiteral("warning: no audio of a known length was found in %1").arg(file));
    }
    return meeting;
}

} // namespace

ExitStatus runImport(Session& session) {
    ExitStatus status = ExitStatus::ok;
    QJsonArray imported;
    // Before the copying starts, beside the main loop, so that it is never cut off in the middle.
    session.watchSignals();
    for (const QString& file : session.line().operands) {
        if (session.isInterrupted())
            break;
        const auto meeting = importOne(session, file);
        if (!meeting) {
            status = ExitStatus::failed;
            continue;
        }
        imported.append(QJsonObject{{QStringLiteral("id"), meeting->id},
                                    {QStringLiteral("title"), meeting->title},
                                    {QStringLiteral("audio"), meeting->audioURL.value_or(QString())}});
        if (!session.wantsJson())
            session.terminal().print(meeting->id + QStringLiteral("  ") + visibleText(meeting->title) +
                                     QLatin1Char('\n'));
    }
    // After an interruption too: the meetings made so far exist.
    if (session.wantsJson())
        session.printJson(imported);
    session.throwIfInterrupted();
    return status;
}

} // namespace corvane::ctl
