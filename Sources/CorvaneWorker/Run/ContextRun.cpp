#include "CorvaneWorker/Run/ContextRun.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneContract/Transcripts/TranscriptText.h"
#include "CorvaneWorker/Language/MeetingDescription.h"
#include "CorvaneWorker/Language/OllamaModel.h"
#include "CorvaneWorker/Run/Log.h"
#include "CorvaneWorker/WorkerError.h"

#include <QFileInfo>

namespace corvane {

namespace {

const QString blockKey = QStringLiteral("llm");

QByteArray readResult(const QString& runDirectory) {
    if (!QFileInfo(runDirectory).isDir())
        throw WorkerError(QStringLiteral("There is no run in “%1”.").arg(runDirectory));
    auto json = readFile(runFiles::in(runDirectory, runFiles::result));
    if (!json)
        throw WorkerError(QStringLiteral("The run has no transcript to describe."));
    return *std::move(json);
}

JSONValue blockOf(const TranscriptLLMContext& description) {
    TranscriptResult carrier;
    carrier.llm = description;
    const JsonDocument document(encodeTranscriptResult(carrier));
    return document.root().object().required(blockKey.toUtf8().constData()).free();
}

// Works on the document as it stands, so that what this program does not know in it stays.
QByteArray withBlock(const QByteArray& json, const TranscriptLLMContext& description) {
    (void)decodeTranscriptResult(json);
    const JsonDocument document(json);
    JSONValue::Object content = document.root().object().free();
    content.insert_or_assign(blockKey, blockOf(description));
    return prettyJson(JSONValue(content).toQJson().toObject());
}

TranscriptLLMContext describe(const ContextCommand& command) {
    const TranscriptResult transcript = decodeTranscriptResult(readResult(command.runDirectory));
    if (groupedSegments(transcript.segments).empty())
        throw WorkerError(QStringLiteral("Nobody speaks in this run."));
    const LanguageSettings settings = languageSettings(LanguageModelUse::Ollama);
    if (settings.use == LanguageModelUse::Off)
        throw WorkerError(QStringLiteral("The language model is switched off (%1).").arg(workerEnvironment::llm));
    OllamaModel model(settings);
    return describeMeeting(transcript, command.context, model, {settings.contextTokens, settings.timeout},
                           [](double) {});
}

void run(const ContextCommand& command) {
    const TranscriptLLMContext description = describe(command);
    // The model takes its time, and meanwhile the user may have named a speaker.
    const QByteArray json = readResult(command.runDirectory);
    writeFileAtomically(runFiles::in(command.runDirectory, runFiles::result), withBlock(json, description));
}

} // namespace

int runContext(const ContextCommand& command) {
    try {
        run(command);
        return 0;
    } catch (const LanguageError& error) {
        logLine(QStringLiteral("The meeting was not described: %1.").arg(error.text()));
    } catch (const JsonError& error) {
        logLine(QStringLiteral("The transcript of the run is damaged: %1.").arg(error.text()));
    } catch (const FileError& error) {
        logLine(QStringLiteral("Corvane could not write the transcript: %1.").arg(error.text()));
    } catch (const WorkerError& error) {
        logLine(error.text());
    } catch (const std::exception& error) {
        logLine(QStringLiteral("The meeting was not described: %1.").arg(QString::fromUtf8(error.what())));
    }
    return 1;
}

} // namespace corvane
