// corvanectl transcript
#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Transcripts/TranscriptText.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/Session.h"

#include <algorithm>

namespace corvane::ctl {

namespace {

enum class Format { text, srt, vtt, json };

Format wantedFormat(const Session& session) {
    const QString word = session.line().value(QStringLiteral("format")).value_or(QStringLiteral("text"));
    if (session.wantsJson() || word == QLatin1String("json"))
        return Format::json;
    if (word == QLatin1String("text"))
        return Format::text;
    if (word == QLatin1String("srt"))
        return Format::srt;
    if (word == QLatin1String("vtt"))
        return Format::vtt;
    throw UsageError(QStringLiteral("--format takes text, srt, vtt or json, not “%1”").arg(word));
}

// Why there is no transcript, and what to do about it.
[[noreturn]] void explain(const MeetingListItem& meeting, const std::optional<WorkerJobState>& state) {
    if (meeting.isDraft())
        throw CtlError(
            QStringLiteral("the meeting was never processed; corvanectl process %1 --wait does it").arg(meeting.id));
    if (!state)
        throw CtlError(QStringLiteral("the run in %1 tells no state and has no transcript").arg(meeting.latestRun));
    if (state->status == jobStatus::running)
        throw CtlError(QStringLiteral("the meeting is still being processed (%1 %): %2; corvanectl status shows it")
                           .arg(static_cast<int>(std::clamp(state->progress, 0.0, 1.0) * 100))
                           .arg(state->message));
    if (state->status == jobStatus::completed)
        throw CtlError(
            QStringLiteral("%1 is missing or cannot be read").arg(runFiles::in(meeting.latestRun, runFiles::result)));
    throw CtlError(QStringLiteral("processing ended as “%1”: %2 (see %3, or try corvanectl process %4 --wait)")
                       .arg(state->status, state->message, runFiles::in(meeting.latestRun, runFiles::standardErrorLog),
                            meeting.id));
}

// A time beyond these limits cannot be put as hours and minutes; only a faulty worker writes one.
void checkTimes(const TranscriptResult& result) {
    constexpr double limit = 1e12; // seconds
    const bool sound =
        std::all_of(result.segments.begin(), result.segments.end(), [](const TranscriptSegment& segment) {
            return segment.start > -limit && segment.start < limit && segment.end > -limit && segment.end < limit;
        });
    if (!sound)
        throw CtlError(QStringLiteral("the transcript holds a time that cannot be printed; --format json shows it"));
}

void printJsonResult(Session& session, const QString& run) {
    // The file itself, so that keys which this program does not know are printed too.
    const QString path = runFiles::in(run, runFiles::result);
    const auto content = readFile(path);
    if (!content)
        throw CtlError(QStringLiteral("%1 cannot be read").arg(path));
    session.printJson(JsonDocument(*content).root().free().toQJson().toObject());
}

} // namespace

ExitStatus runTranscript(Session& session) {
    const Format format = wantedFormat(session);
    const MeetingListItem meeting = session.select(session.line().operand(0));
    const auto& result = session.model().detail().transcriptResult();
    if (meeting.isDraft() || !result)
        explain(meeting, session.model().jobs().jobState());
    if (format == Format::json) {
        printJsonResult(session, meeting.latestRun);
        return ExitStatus::ok;
    }
    checkTimes(*result);
    Terminal& terminal = session.terminal();
    if (format == Format::srt)
        terminal.printForeign(transcriptSRT(result->segments, result->speakerNames));
    else if (format == Format::vtt)
        terminal.printForeign(transcriptVTT(result->segments, result->speakerNames));
    else
        terminal.printForeign(transcriptText(result->segments, result->speakerNames));
    if (result->segments.empty())
        terminal.say(QStringLiteral("The transcript is empty: no speech was recognised."));
    return ExitStatus::ok;
}

} // namespace corvane::ctl
