// The executable itself, run as the application runs it.
#include "Worker/WorkerSamples.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/ExtractedSpeakerEmbedding.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Jobs/WorkerArguments.h"
#include "CorvaneContract/Jobs/WorkerJobEvent.h"
#include "CorvaneContract/Jobs/WorkerJobState.h"
#include "CorvaneContract/Transcripts/TranscriptText.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <csignal>
#include <numeric>

using namespace corvane;
using namespace corvane::test;

namespace {

struct Exit {
    int status = -1;
    QString output;
    QString error;
};

Exit finish(QProcess& process) {
    EXPECT_TRUE(process.waitForFinished(100000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

void start(QProcess& process, const QStringList& arguments) {
    process.start(QStringLiteral(CORVANE_WORKER_EXECUTABLE), arguments);
    ASSERT_TRUE(process.waitForStarted());
}

Exit runWorker(const QStringList& arguments) {
    QProcess process;
    start(process, arguments);
    return finish(process);
}

QStringList processArguments(const QString& audio, const QString& run, const QString& language = QStringLiteral("en"),
                             const QStringList& speakers = {workerArguments::autoSpeakers}) {
    namespace words = workerArguments;
    return QStringList{words::process,
                       words::audio,
                       audio,
                       words::outDir,
                       run,
                       words::device,
                       QStringLiteral("mps"),
                       words::backend,
                       QStringLiteral("whispermlx"),
                       words::language,
                       language} +
           speakers;
}

std::vector<WorkerJobEvent> events(const QString& run) {
    std::vector<WorkerJobEvent> all;
    for (const QByteArray& line : readFile(runFiles::in(run, runFiles::events)).value_or(QByteArray()).split('\n')) {
        if (line.isEmpty())
            continue;
        const auto event = decodeWorkerJobEvent(line);
        EXPECT_TRUE(event && event->timestamp) << line.constData();
        if (event)
            all.push_back(*event);
    }
    return all;
}

WorkerJobState state(const QString& run) {
    return decodeWorkerJobState(readFile(runFiles::in(run, runFiles::jobState)).value_or(QByteArray()));
}

class Process : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name) const { return m_directory.filePath(name); }

    // Two readers, 25 s.
    QString conversation() {
        const QString file = path(QStringLiteral("talk.wav"));
        writeWave(file, converse({{readerSentence(QStringLiteral("0880")), readerSentence(QStringLiteral("0920"))},
                                  {prompt(QStringLiteral("vm-intro")), prompt(QStringLiteral("demo-abouttotry"))}})
                            .samples);
        return file;
    }

private:
    QTemporaryDir m_directory;
};

} // namespace

TEST_F(Process, ARecordingBecomesATranscriptAndItsSpeakersBecomeVoices) {
    const QString audio = conversation();
    const QString run = path(QStringLiteral("runs/one"));
    createPrivateDirectory(run);
    writeFileAtomically(runFiles::in(run, runFiles::events), "{\"type\":\"failed\"}\n");
    const Exit exit = runWorker(processArguments(audio, run));
    ASSERT_EQ(exit.status, 0) << exit.error.toStdString();
    EXPECT_EQ(exit.output, QString());

    const WorkerJobState last = state(run);
    EXPECT_EQ(last.status, jobStatus::completed);
    EXPECT_EQ(last.progress, 1.0);
    EXPECT_EQ(last.outputs.at(QStringLiteral("result")), runFiles::in(run, runFiles::result));

    const auto log = events(run);
    ASSERT_GE(log.size(), 4U);
    EXPECT_EQ(log.front().type, jobEvents::jobStarted);
    EXPECT_EQ(stringAt(log.front().payload, QStringLiteral("audio")), audio);
    EXPECT_EQ(log[log.size() - 2].type, jobEvents::llmSkipped);
    EXPECT_EQ(log.back().type, jobEvents::completed);
    double progress = -1;
    for (const WorkerJobEvent& event : log) {
        if (event.type != jobEvents::asrProgress)
            continue;
        const double next = numberAt(event.payload, QStringLiteral("progress")).value();
        EXPECT_GT(next, progress);
        progress = next;
    }
    EXPECT_EQ(progress, 1.0);

    const auto result = decodeTranscriptResult(readFile(runFiles::in(run, runFiles::result)).value());
    EXPECT_EQ(stringAt(result.metadata, QStringLiteral("audio")), audio);
    EXPECT_EQ(result.speakers.size(), 2U);
    EXPECT_EQ(result.segments.front().speaker, QStringLiteral("SPEAKER_00"));
    const QString text = *readTextFile(runFiles::in(run, runFiles::transcriptText));
    EXPECT_EQ(text, transcriptText(result.segments, {}));
    for (const char* expected : {"young man", "respectable", "press the pound key"})
        EXPECT_THAT(text.toStdString(), testing::HasSubstr(expected));
    struct stat status {};
    for (const QString& file : QDir(run).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        ASSERT_EQ(::stat(QFile::encodeName(run + QLatin1Char('/') + file).constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 077, 0U) << file.toStdString();
    }

    const auto extract = [&](const QString& label) {
        return runWorker({workerArguments::speakerProfiles, workerArguments::extract, workerArguments::runDir, run,
                          workerArguments::speaker, label, workerArguments::out, path(label)});
    };
    std::vector<ExtractedSpeakerEmbedding> voices;
    for (const auto& speaker : result.speakers) {
        const Exit extraction = extract(speaker.speaker);
        ASSERT_EQ(extraction.status, 0) << extraction.error.toStdString();
        EXPECT_EQ(extraction.output + extraction.error, QString());
        voices.push_back(decodeExtractedSpeakerEmbedding(readFile(path(speaker.speaker)).value()));
        const auto& voice = voices.back();
        EXPECT_EQ(voice.modelID, voiceModelID);
        EXPECT_EQ(voice.sourceRunID, QStringLiteral("one"));
        EXPECT_EQ(voice.dimension, static_cast<std::int64_t>(voice.embedding.size()));
        EXPECT_NEAR(std::inner_product(voice.embedding.begin(), voice.embedding.end(), voice.embedding.begin(), 0.0),
                    1.0, 1e-6);
    }
    EXPECT_LT(
        std::inner_product(voices[0].embedding.begin(), voices[0].embedding.end(), voices[1].embedding.begin(), 0.0),
        0.5);
    const Exit nobody = extract(QStringLiteral("SPEAKER_09"));
    EXPECT_EQ(nobody.status, 1);
    EXPECT_THAT(nobody.error.toStdString(), testing::HasSubstr("no speaker “SPEAKER_09”"));
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("SPEAKER_09"))));
    QFile::remove(audio);
    EXPECT_EQ(extract(QStringLiteral("SPEAKER_00")).status, 1);
}

TEST_F(Process, WhatCannotBeTranscribedFailsWithASentence) {
    ffmpeg({QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
            QStringLiteral("anoisesrc=d=3:a=0.05:seed=1"), path(QStringLiteral("noise.wav"))});
    QFile(path(QStringLiteral("empty.wav"))).open(QIODevice::WriteOnly);
    const struct {
        QString audio;
        QString language;
        const char* sentence;
    } cases[] = {
        {QStringLiteral("noise.wav"), QStringLiteral("fr"), "no speech model for “fr”. It transcribes English."},
        {QStringLiteral("empty.wav"), QStringLiteral("en"), "is empty"},
        {QStringLiteral("missing.wav"), QStringLiteral("en"), "does not exist"},
    };
    for (const auto& failure : cases) {
        const QString run = path(QStringLiteral("failed"));
        const Exit exit = runWorker(processArguments(path(failure.audio), run, failure.language));
        EXPECT_EQ(exit.status, 1);
        const WorkerJobState last = state(run);
        EXPECT_EQ(last.status, jobStatus::failed);
        EXPECT_THAT(last.message.toStdString(), testing::HasSubstr(failure.sentence));
        EXPECT_EQ(exit.error.trimmed(), last.message);
        EXPECT_EQ(events(run).back().type, jobEvents::failed);
        EXPECT_EQ(stringAt(events(run).back().payload, QStringLiteral("error")), last.message);
    }
    const QString run = path(QStringLiteral("noise"));
    EXPECT_EQ(runWorker(processArguments(path(QStringLiteral("noise.wav")), run)).status, 0);
    EXPECT_EQ(state(run).message, QStringLiteral("No speech was found"));
    EXPECT_TRUE(decodeTranscriptResult(readFile(runFiles::in(run, runFiles::result)).value()).segments.empty());
}

TEST_F(Process, ADamagedModelIsNamed) {
    const QString audio = path(QStringLiteral("short.wav"));
    writeWave(audio, converse({{readerSentence(QStringLiteral("0930"))}}).samples);
    const QString model = path(QStringLiteral("model"));
    const QString installed = QStringLiteral("/usr/share/pocketsphinx/model/en-us");
    createPrivateDirectory(model + QStringLiteral("/en-us"));
    for (const QString& folder : {QString(), QStringLiteral("/en-us")})
        for (const QString& file : QDir(installed + folder).entryList(QDir::Files))
            ASSERT_TRUE(
                QFile::link(installed + folder + QLatin1Char('/') + file, model + folder + QLatin1Char('/') + file));
    for (const char* part : {"en-us/mdef", "en-us/transition_matrices", "en-us/means", "en-us.lm.bin"}) {
        SCOPED_TRACE(part);
        const QString name = QLatin1Char('/') + QString::fromLatin1(part);
        QFile::remove(model + name);
        const QByteArray whole = readFile(installed + name).value();
        writeFileAtomically(model + name, whole.left(whole.size() / 2));
        const QString run = path(QStringLiteral("damaged"));
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("CORVANE_WORKER_MODEL_DIR"), model);
        process.setProcessEnvironment(environment);
        start(process, processArguments(audio, run));
        EXPECT_NE(finish(process).status, 0);
        EXPECT_EQ(state(run).status, jobStatus::failed);
        EXPECT_THAT(state(run).message.toStdString(), testing::HasSubstr("pocketsphinx-en-us"));
        QFile::remove(model + name);
        ASSERT_TRUE(QFile::link(installed + name, model + name));
    }
}

TEST_F(Process, AFullDiskIsToldAndLeavesNothingBehind) {
    ffmpeg({QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), QStringLiteral("sine=300:d=20"),
            path(QStringLiteral("long.wav"))});
    const QString run = path(QStringLiteral("run"));
    QProcess process;
    // A limit on the size of a file fails like a full disk, and needs no disk of one's own.
    process.start(QStringLiteral("sh"),
                  QStringList{QStringLiteral("-c"), QStringLiteral("ulimit -f 64; exec \"$0\" \"$@\""),
                              QStringLiteral(CORVANE_WORKER_EXECUTABLE)} +
                      processArguments(path(QStringLiteral("long.wav")), run));
    const Exit exit = finish(process);
    EXPECT_EQ(exit.status, 1);
    EXPECT_EQ(state(run).status, jobStatus::failed);
    EXPECT_EQ(exit.error.trimmed(), state(run).message);
    EXPECT_FALSE(QFile::exists(runFiles::in(run, runFiles::result)));
}

TEST_F(Process, AskedToStopItStopsAtOnceAndSaysSo) {
    const QString audio = conversation();
    for (const int signal : {SIGTERM, SIGINT}) {
        const QString run = path(QStringLiteral("stopped"));
        QProcess process;
        start(process, processArguments(audio, run));
        QElapsedTimer timer;
        timer.start();
        while (events(run).empty() && timer.elapsed() < 20000)
            process.waitForFinished(5);
        ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), signal), 0);
        EXPECT_NE(finish(process).status, 0);
        EXPECT_EQ(state(run).status, jobStatus::failed);
        EXPECT_EQ(state(run).message, QStringLiteral("Transcription was interrupted"));
        EXPECT_EQ(events(run).back().type, jobEvents::cancelled);
        EXPECT_TRUE(QDir(run).removeRecursively());
    }
}

TEST(CommandLine, UnknownWordsEndWithStatusTwo) {
    for (const QStringList& arguments :
         {QStringList{}, QStringList{QStringLiteral("fly")}, QStringList{QStringLiteral("process")},
          QStringList{QStringLiteral("process"), QStringLiteral("--audio")},
          QStringList{QStringLiteral("speaker-context"), QStringLiteral("--run-dir"), QStringLiteral("x"),
                      QStringLiteral("--context"), QStringLiteral("y")},
          processArguments(QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("en"),
                           {workerArguments::numSpeakers, QStringLiteral("two")})}) {
        const Exit exit = runWorker(arguments);
        EXPECT_EQ(exit.status, 2) << arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_FALSE(exit.error.isEmpty());
    }
    EXPECT_THAT(runWorker({QStringLiteral("--version")}).output.toStdString(), testing::StartsWith("corvane-worker "));
    EXPECT_EQ(runWorker({QStringLiteral("--help")}).status, 0);
}
