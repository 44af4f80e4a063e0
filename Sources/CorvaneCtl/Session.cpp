#include "CorvaneCtl/Session.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCtl/MeetingChoice.h"

#include <QFileInfo>

#include <utility>

namespace corvane::ctl {

namespace {

AppPaths pathsOf(const CommandLine& line) {
    const auto directory = line.value(QStringLiteral("data-dir"));
    if (directory && directory->isEmpty())
        throw UsageError(QStringLiteral("--data-dir needs the name of a directory"));
    return AppPaths(directory ? std::optional(QFileInfo(*directory).absoluteFilePath()) : std::nullopt);
}

// JSON needs no control characters beyond those that it escapes, but a terminal obeys U+007F to U+009F too. They can
// only stand inside strings, so that an escape means the same.
QByteArray safeJson(const QByteArray& json) {
    QString text = QString::fromUtf8(json);
    for (char16_t unit = 0x7F; unit < 0xA0; ++unit)
        text.replace(QChar(unit), QString::asprintf("\\u%04x", unit));
    return text.toUtf8();
}

} // namespace

Session::Session(CommandLine line, AppServices services, Terminal& terminal)
    : m_line(std::move(line)), m_services(std::move(services)), m_terminal(terminal), m_paths(pathsOf(m_line)) {
    m_services.surface = Surface::command;
}

Session::~Session() = default;

AppModel& Session::model() {
    if (!m_model) {
        try {
            m_paths.createDirectories();
        } catch (const FileError& error) {
            throw CtlError(QStringLiteral("the data directory %1 cannot be used: %2").arg(m_paths.root, error.text()));
        }
        for (const QString& directory : {m_paths.runs(), m_paths.meetings()}) {
            if (!m_services.files->list(directory))
                throw CtlError(QStringLiteral("the data directory cannot be read: %1").arg(directory));
        }
        m_model = std::make_unique<AppModel>(m_paths, m_services);
    }
    return *m_model;
}

MeetingListItem Session::meeting(const std::optional<QString>& words) {
    return chooseMeeting(model().library().meetings(), words.value_or(QStringLiteral("latest")));
}

MeetingListItem Session::select(const std::optional<QString>& words) {
    MeetingListItem chosen = meeting(words);
    model().selectMeeting(chosen);
    return chosen;
}

void Session::printJson(const QJsonObject& object) {
    m_terminal.print(safeJson(prettyJson(object)));
}

void Session::printJson(const QJsonArray& array) {
    m_terminal.print(safeJson(prettyJson(array)));
}

void Session::printJsonLine(const QJsonObject& object) {
    m_terminal.print(safeJson(compactJson(object) + '\n'));
}

void Session::runLoop(const std::function<void(QEventLoop&)>& start, const std::function<void()>& onInterrupt) {
    watchSignals();
    throwIfInterrupted();
    QEventLoop loop;
    bool callOff = static_cast<bool>(onInterrupt);
    const auto interrupted = QObject::connect(m_signals.get(), &TerminationSignals::received, &loop, [&] {
        if (std::exchange(callOff, false))
            onInterrupt();
        else
            loop.quit();
    });
    start(loop);
    loop.exec();
    QObject::disconnect(interrupted);
}

void Session::watchSignals() {
    if (!m_signals)
        m_signals = std::make_unique<TerminationSignals>();
}

void Session::forgetInterruption() {
    if (m_signals)
        m_signals->forget();
}

void Session::throwIfInterrupted() const {
    const auto number = m_signals ? m_signals->last() : std::nullopt;
    if (number)
        throw Interrupted(*number);
}

} // namespace corvane::ctl
