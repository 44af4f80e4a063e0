#include "CorvaneWorker/Run/ProcessRun.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneContract/Transcripts/TranscriptText.h"
#include "CorvaneWorker/Audio/AudioDecoder.h"
#include "CorvaneWorker/Diarization/Diarizer.h"
#include "CorvaneWorker/Recognition/EngineChoice.h"
#include "CorvaneWorker/Recognition/Recognizer.h"
#include "CorvaneWorker/Recognition/SpeechDecoder.h"
#include "CorvaneWorker/Run/CrashNotice.h"
#include "CorvaneWorker/Run/LanguageStep.h"
#include "CorvaneWorker/Run/Log.h"
#include "CorvaneWorker/Run/RunReporter.h"
#include "CorvaneWorker/Run/SignalWatch.h"
#include "CorvaneWorker/Speech/FrameLevels.h"
#include "CorvaneWorker/Speech/VoiceActivityNetwork.h"
#include "CorvaneWorker/Transcript/Inaudible.h"
#include "CorvaneWorker/Transcript/SegmentAssembly.h"
#include "CorvaneWorker/Voice/VoiceModel.h"
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

void complete(const QString& directory, RunReporter& reporter, const TranscriptResult& result) {
    const QString resultPath = runFiles::in(directory, runFiles::result);
    const QString textPath = runFiles::in(directory, runFiles::transcriptText);
    const bool silent = result.segments.empty();
    reporter.complete(silent ? QStringLiteral("No speech was found") : QStringLiteral("Completed"),
                      {{QStringLiteral("result"), resultPath}, {QStringLiteral("transcript"), textPath}}, [&] {
                          writeFileAtomically(textPath, transcriptText(result.segments, {}).toUtf8());
                          writeFileAtomically(resultPath, encodeTranscriptResult(result));
                      });
}

class ProcessRun {
public:
    ProcessRun(const ProcessCommand& command, RunReporter& reporter) : m_command(command), m_reporter(reporter) {}

    void run() {
        m_reporter.started(m_command.audio);
        chooseRecogniser();
        SampleStore samples(m_command.outDirectory);
        decode(samples);
        separate(samples);
        recognize(samples);
        finish();
    }

private:
    // Before anything else: a language that nothing knows is told at once.
    void chooseRecogniser() {
        const CrashNotice notice(m_command.outDirectory,
                                 QStringLiteral("The speech models are damaged and cannot be loaded."));
        m_choice = chooseEngine(m_command.language);
        for (const QString& note : m_choice.notes)
            remark(note);
    }

    // Which better means were missing: for the log and for metadata.
    void remark(const QString& sentence) {
        logLine(sentence);
        m_remarks.emplace_back(sentence);
    }

    void decode(SampleStore& samples) {
        m_reporter.stage(QStringLiteral("Decoding audio"), 0.0);
        FrameLevels levels;
        const auto network = VoiceActivityNetwork::load();
        if (!network)
            remark(QStringLiteral("Without a network that knows speech, music and noise may be taken for it."));
        const auto sink = [&](std::span<const std::int16_t> block) {
            samples.append(block);
            levels.add(block);
            if (network)
                network->add(block);
        };
        const auto decoded = decodeAudio(
            m_command.audio, sink, [this](double fraction) { m_reporter.progressed(fraction * decodedProgress); });
        for (const QString& note : decoded.notes)
            logLine(note);
        m_duration = secondsOfSamples(decoded.sampleCount);
        m_speech = findSpeech(levels.levels());
        if (network) {
            m_heard = network->finish();
            m_speech = confirmedSpeech(m_speech, m_heard);
        }
        m_levels = levels.levels();
    }

    void recognize(const SampleStore& samples) {
        m_reporter.stage(QStringLiteral("Transcribing"), separatedProgress);
        m_reporter.recognized(0.0);
        const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1U, mostRecognizers);
        const CrashNotice notice(m_command.outDirectory, m_choice.engine->crashText());
        const auto regions = speechRegions(m_turns, m_levels, m_choice.engine->regionLimits());
        m_words = recognizeRegions(samples, regions, *m_choice.engine, threads, [this](double fraction) {
            m_reporter.recognized(fraction);
            m_reporter.progressed(separatedProgress + fraction * (transcribedProgress - separatedProgress));
        });
        m_words = withInaudible(std::move(m_words), m_turns, m_heard);
        m_reporter.recognized(1.0);
    }

    void separate(const SampleStore& samples) {
        const bool separated = m_command.separation == SpeakerSeparation::On;
        const SpeakerLimits limits = separated ? m_command.speakers : SpeakerLimits{1, 1};
        m_reporter.stage(QStringLiteral("Telling speakers apart"), decodedProgress);
        if (const QString& note = installedVoiceModel().note; separated && !note.isEmpty())
            remark(note);
        m_turns = diarize(samples, m_speech, limits, [this](double fraction) {
            m_reporter.progressed(decodedProgress + fraction * (separatedProgress - decodedProgress));
        });
    }

    [[nodiscard]] JSONValue::Object metadata() const {
        const bool separated = m_command.separation == SpeakerSeparation::On;
        return {{QStringLiteral("audio"), m_command.audio},
                {QStringLiteral("language"), m_command.language},
                {QStringLiteral("duration"), std::round(m_duration * 1000.0) / 1000.0},
                {QStringLiteral("engine"), QStringLiteral("corvane-worker")},
                {QStringLiteral("worker_version"), QStringLiteral(CORVANE_VERSION)},
                {QStringLiteral("asr_engine"), m_choice.engine->engineName()},
                {QStringLiteral("asr_model"), m_choice.engine->modelName()},
                {QStringLiteral("diarization"), separated ? diarizationName() : QStringLiteral("off")},
                {QStringLiteral("remarks"), m_remarks},
                {QStringLiteral("voice_model"), voiceModelID}};
    }

    void finish() {
        TranscriptResult result;
        result.metadata = metadata();
        result.segments = assembleSegments(m_words, m_choice.engine->spelling());
        result.speakers = summarizeSpeakers(result.segments);
        // A transcript that is there must not be lost because its description takes long.
        m_reporter.endEarlyBy([directory = m_command.outDirectory, &reporter = m_reporter, result] {
            reporter.event(jobEvents::llmFailed, {{QStringLiteral("error"), QStringLiteral("interrupted")}});
            complete(directory, reporter, result);
        });
        result.llm = languageStep(result, m_reporter, transcribedProgress);
        complete(m_command.outDirectory, m_reporter, result);
    }

    const ProcessCommand& m_command;
    RunReporter& m_reporter;
    EngineChoice m_choice;
    JSONValue::Array m_remarks;
    double m_duration = 0; // seconds
    std::vector<float> m_levels;
    std::vector<FrameRange> m_speech;
    std::vector<FrameRange> m_heard; // by the network
    std::vector<RecognizedWord> m_words;
    std::vector<SpeakerTurn> m_turns;
};

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
    // By the time a failure is told, the temporary sound file is gone and its room on the disk is free again.
    try {
        ProcessRun(command, reporter).run();
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

} // namespace corvane
