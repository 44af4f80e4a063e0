#include "CorvaneWorker/Run/ProcessRun.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneWorker/Recognition/Recognizer.h"
#include "CorvaneWorker/Recognition/SpeechDecoder.h"
#include "CorvaneWorker/Run/CrashNotice.h"
#include "CorvaneWorker/Run/Log.h"
#include "CorvaneWorker/Run/SignalWatch.h"
#include "CorvaneWorker/Speech/FrameLevels.h"
#include "CorvaneWorker/Transcript/Inaudible.h"
#include "CorvaneWorker/Transcript/SegmentAssembly.h"
#include "CorvaneWorker/WorkerError.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

// Where each stage ends in the fraction of the whole run, by the time that it takes.
constexpr double decodedProgress = 0.08;
constexpr double separatedProgress = 0.20;
constexpr double transcribedProgress = 0.98;

constexpr unsigned mostRecognizers = 8;

class Pipeline {
public:
    Pipeline(const ProcessCommand& command, const RunStages& stages, RunReporter& reporter)
        : m_command(command), m_stages(stages), m_reporter(reporter) {}

    void run() {
        m_reporter.stage(QStringLiteral("Decoding audio"), 0.0);
        SampleStore samples(m_command.outDirectory);
        decode(samples);
        separate(samples);
        recognize(samples);
        finish();
    }

private:
    void decode(SampleStore& samples) {
        FrameLevels levels;
        const auto sink = [&](std::span<const std::int16_t> block) {
            samples.append(block);
            levels.add(block);
            m_stages.detector->add(block);
        };
        const auto decoded = m_stages.source->decode(
            m_command.audio, sink, [this](double fraction) { m_reporter.progressed(fraction * decodedProgress); });
        for (const QString& note : decoded.notes)
            logLine(note);
        m_duration = secondsOfSamples(decoded.sampleCount);
        m_reporter.unseenStage(QStringLiteral("Finding speech"));
        m_detected = m_stages.detector->finish(levels.levels());
        m_levels = levels.levels();
    }

    void separate(const SampleStore& samples) {
        m_reporter.stage(QStringLiteral("Telling speakers apart"), decodedProgress);
        m_turns = m_stages.separator->separate(samples, m_detected.speech, m_command.speakers, [this](double fraction) {
            m_reporter.progressed(decodedProgress + fraction * (separatedProgress - decodedProgress));
        });
    }

    void recognize(const SampleStore& samples) {
        const QString stage = QStringLiteral("Transcribing");
        const RecognitionEngine& engine = *m_stages.engine;
        m_reporter.stage(stage, separatedProgress);
        m_reporter.recognized(0.0);
        const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1U, mostRecognizers);
        const CrashNotice notice(m_command.outDirectory, stage, engine.crashText());
        const auto regions = speechRegions(m_turns, m_levels, engine.regionLimits());
        m_words = recognizeRegions(samples, regions, engine, threads, [this](double fraction) {
            m_reporter.recognized(fraction);
            m_reporter.progressed(separatedProgress + fraction * (transcribedProgress - separatedProgress));
        });
        m_words = withInaudible(std::move(m_words), m_turns, m_detected.heard);
        m_reporter.recognized(1.0);
    }

    [[nodiscard]] JSONValue::Object metadata() const {
        return {{QStringLiteral("audio"), m_command.audio},
                {QStringLiteral("language"), m_command.language},
                {QStringLiteral("duration"), std::round(m_duration * 1000.0) / 1000.0},
                {QStringLiteral("engine"), QStringLiteral("corvane-worker")},
                {QStringLiteral("worker_version"), QStringLiteral(CORVANE_VERSION)},
                {QStringLiteral("asr_engine"), m_stages.engine->engineName()},
                {QStringLiteral("asr_model"), m_stages.engine->modelName()},
                {QStringLiteral("diarization"), m_stages.separator->name()},
                {QStringLiteral("remarks"), JSONValue::Array(m_stages.remarks.begin(), m_stages.remarks.end())},
                {QStringLiteral("voice_model"), voiceModelID}};
    }

    void finish() {
        TranscriptResult result;
        result.metadata = metadata();
        result.segments = assembleSegments(m_words, m_stages.engine->spelling());
        result.speakers = summarizeSpeakers(result.segments);
        const auto complete = [&reporter = m_reporter, writer = m_stages.writer](const TranscriptResult& whole) {
            const bool silent = whole.segments.empty();
            reporter.complete(silent ? QStringLiteral("No speech was found") : QStringLiteral("Completed"),
                              [&] { return writer->write(whole); });
        };
        // A transcript that is there must not be lost because its description takes long.
        m_reporter.endEarlyBy([complete, &reporter = m_reporter, result] {
            reporter.event(jobEvents::llmFailed, {{QStringLiteral("error"), QStringLiteral("interrupted")}});
            complete(result);
        });
        result.llm = languageStep(m_stages.language, result, m_reporter, transcribedProgress);
        complete(result);
    }

    const ProcessCommand& m_command;
    const RunStages& m_stages;
    RunReporter& m_reporter;
    double m_duration = 0; // seconds
    std::vector<float> m_levels;
    DetectedSpeech m_detected;
    std::vector<RecognizedWord> m_words;
    std::vector<SpeakerTurn> m_turns;
};

RunStages loadStages(const ProcessCommand& command, RunReporter& reporter, const StageMaker& makeStages) {
    const QString stage = QStringLiteral("Loading the models");
    reporter.unseenStage(stage);
    const CrashNotice notice(command.outDirectory, stage,
                             QStringLiteral("The speech models are damaged and cannot be loaded."));
    RunStages stages = makeStages(command);
    for (const QString& remark : stages.remarks)
        logLine(remark);
    return stages;
}

int fail(RunReporter& reporter, const QString& sentence) {
    reporter.failed(sentence);
    logLine(sentence);
    return 1;
}

// Ends the process from a thread that is not the main one: the others cannot be waited for.
void endNow(RunReporter& reporter) {
    switch (reporter.interrupted()) {
    case Interruption::tooLate:
        return;
    case Interruption::finished:
        ::_exit(0);
    case Interruption::cancelled:
        logLine(QStringLiteral("Transcription was interrupted"));
        ::_exit(1);
    }
}

} // namespace

int runStages(const ProcessCommand& command, RunReporter& reporter, const StageMaker& makeStages) {
    // By the time a failure is told, the temporary sound file is gone and its room on the disk is free again.
    try {
        reporter.started(command.audio);
        const RunStages stages = loadStages(command, reporter, makeStages);
        Pipeline(command, stages, reporter).run();
        return 0;
    } catch (const WorkerError& error) {
        return fail(reporter, error.text());
    } catch (const FileError& error) {
        return fail(reporter, QStringLiteral("Corvane could not write the transcript: %1.").arg(error.text()));
    } catch (const std::bad_alloc&) {
        return fail(reporter, QStringLiteral("There was not enough memory to transcribe the recording."));
    } catch (const std::exception& error) {
        return fail(reporter, QStringLiteral("Transcription failed: %1.").arg(QString::fromUtf8(error.what())));
    }
}

int runProcess(const ProcessCommand& command) {
    try {
        createPrivateDirectory(command.outDirectory);
    } catch (const FileError& error) {
        logLine(QStringLiteral("Corvane could not make the folder of the run: %1.").arg(error.text()));
        return 1;
    }
    RunReporter reporter(command.outDirectory);
    const SignalWatch watch([&reporter] { endNow(reporter); });
    setSpeechLibraryFailureHandler([&reporter] {
        ::_exit(fail(reporter, QStringLiteral("The speech model is damaged and cannot be used. Reinstall the package "
                                              "pocketsphinx-en-us.")));
    });
    return runStages(command, reporter, chooseStages);
}

} // namespace corvane
