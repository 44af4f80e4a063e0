// The executable itself, run as the application runs it.
#include "Support/PrintQt.h"
#include "Worker/WorkerRun.h"
#include "Worker/WorkerSamples.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/ExtractedSpeakerEmbedding.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Transcripts/TranscriptText.h"

#include <QDir>
#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <csignal>
#include <numeric>

using namespace corvane;
using namespace corvane::test;

namespace {

class Process : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name) const { return m_directory.filePath(name); }

    // Two readers, 25 s.
    QString conversation() {
        const QString file = path(u"talk.wav"_s);
        writeWave(file, converse({{readerSentence(u"0880"_s), readerSentence(u"0920"_s)},
                                  {prompt(u"vm-intro"_s), prompt(u"demo-abouttotry"_s)}})
                            .samples);
        return file;
    }

private:
    QTemporaryDir m_directory;
};

} // namespace

TEST_F(Process, ARecordingBecomesATranscriptAndItsSpeakersBecomeVoices) {
    const QString audio = conversation();
    const QString run = path(u"runs/one"_s);
    createPrivateDirectory(run);
    writeFileAtomically(runFiles::in(run, runFiles::events), "{\"type\":\"failed\"}\n");
    const Exit exit = runWorker(processArguments(audio, run));
    ASSERT_EQ(exit.status, 0) << exit.error.toStdString();
    EXPECT_EQ(exit.output, QString());

    const WorkerJobState last = state(run);
    EXPECT_EQ(last.status, jobStatus::completed);
    EXPECT_EQ(last.progress, 1.0);
    EXPECT_EQ(last.outputs.at(u"result"_s), runFiles::in(run, runFiles::result));

    const auto log = events(run);
    ASSERT_GE(log.size(), 4U);
    EXPECT_EQ(log.front().type, jobEvents::jobStarted);
    EXPECT_EQ(stringAt(log.front().payload, u"audio"_s), audio);
    EXPECT_EQ(log[log.size() - 2].type, jobEvents::llmSkipped);
    EXPECT_EQ(log.back().type, jobEvents::completed);
    double progress = -1;
    for (const WorkerJobEvent& event : log) {
        if (event.type != jobEvents::asrProgress)
            continue;
        const double next = numberAt(event.payload, u"progress"_s).value();
        EXPECT_GT(next, progress);
        progress = next;
    }
    EXPECT_EQ(progress, 1.0);

    const auto result = decodeTranscriptResult(readFile(runFiles::in(run, runFiles::result)).value());
    EXPECT_EQ(stringAt(result.metadata, u"audio"_s), audio);
    EXPECT_EQ(result.speakers.size(), 2U);
    EXPECT_EQ(result.segments.front().speaker, u"SPEAKER_00"_s);
    const QString text = *readTextFile(runFiles::in(run, runFiles::transcriptText));
    EXPECT_EQ(text, transcriptText(result.segments, {}));
    for (const char* expected : {"young man", "respectable", "the pound key"})
        EXPECT_THAT(text.toStdString(), testing::HasSubstr(expected));
    struct stat status {};
    for (const QString& file : QDir(run).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        ASSERT_EQ(::stat(QFile::encodeName(run + u'/' + file).constData(), &status), 0);
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
        EXPECT_EQ(voice.sourceRunID, u"one"_s);
        EXPECT_EQ(voice.dimension, static_cast<std::int64_t>(voice.embedding.size()));
        EXPECT_NEAR(std::inner_product(voice.embedding.begin(), voice.embedding.end(), voice.embedding.begin(), 0.0),
                    1.0, 1e-6);
    }
    EXPECT_LT(
        std::inner_product(voices[0].embedding.begin(), voices[0].embedding.end(), voices[1].embedding.begin(), 0.0),
        0.7); // the application takes 0.82 for the same voice
    const Exit nobody = extract(u"SPEAKER_09"_s);
    EXPECT_EQ(nobody.status, 1);
    EXPECT_THAT(nobody.error.toStdString(), testing::HasSubstr("no speaker “SPEAKER_09”"));
    EXPECT_FALSE(QFile::exists(path(u"SPEAKER_09"_s)));
    QFile::remove(audio);
    EXPECT_EQ(extract(u"SPEAKER_00"_s).status, 1);
}

TEST_F(Process, WhatCannotBeTranscribedFailsWithASentence) {
    ffmpeg({u"-f"_s, u"lavfi"_s, u"-i"_s, u"anoisesrc=d=3:a=0.05:seed=1"_s, path(u"noise.wav"_s)});
    QFile(path(u"empty.wav"_s)).open(QIODevice::WriteOnly);
    const struct {
        QString audio;
        QString language;
        const char* sentence;
    } cases[] = {
        {u"noise.wav"_s, u"xx"_s, "no speech model for “xx”"},
        {u"empty.wav"_s, u"en"_s, "is empty"},
        {u"missing.wav"_s, u"en"_s, "does not exist"},
    };
    for (const auto& failure : cases) {
        const QString run = path(u"failed"_s);
        const Exit exit = runWorker(processArguments(path(failure.audio), run, failure.language));
        EXPECT_EQ(exit.status, 1);
        const WorkerJobState last = state(run);
        EXPECT_EQ(last.status, jobStatus::failed);
        EXPECT_THAT(last.message.toStdString(), testing::HasSubstr(failure.sentence));
        EXPECT_EQ(exit.error.trimmed(), last.message);
        EXPECT_EQ(events(run).back().type, jobEvents::failed);
        EXPECT_EQ(stringAt(events(run).back().payload, u"error"_s), last.message);
        if (failure.language == u"en"_s) {
            EXPECT_EQ(stringAt(events(run).back().payload, u"stage"_s), u"Decoding audio"_s);
        }
    }
    const QString run = path(u"noise"_s);
    EXPECT_EQ(runWorker(processArguments(path(u"noise.wav"_s), run)).status, 0);
    EXPECT_EQ(state(run).message, u"No speech was found"_s);
    EXPECT_TRUE(decodeTranscriptResult(readFile(runFiles::in(run, runFiles::result)).value()).segments.empty());
}

TEST_F(Process, ADamagedModelIsNamed) {
    const QString audio = path(u"short.wav"_s);
    writeWave(audio, converse({{readerSentence(u"0930"_s)}}).samples);
    const QString model = path(u"model"_s);
    const QString installed = u"/usr/share/pocketsphinx/model/en-us"_s;
    createPrivateDirectory(model + u"/en-us"_s);
    for (const QString& folder : {QString(), u"/en-us"_s})
        for (const QString& file : QDir(installed + folder).entryList(QDir::Files))
            ASSERT_TRUE(QFile::link(installed + folder + u'/' + file, model + folder + u'/' + file));
    for (const char* part : {"en-us/mdef", "en-us/transition_matrices", "en-us/means", "en-us.lm.bin"}) {
        SCOPED_TRACE(part);
        const QString name = u'/' + QString::fromLatin1(part);
        QFile::remove(model + name);
        const QByteArray whole = readFile(installed + name).value();
        writeFileAtomically(model + name, whole.left(whole.size() / 2));
        const QString run = path(u"damaged"_s);
        QProcess process;
        start(process, processArguments(audio, run),
              {{u"CORVANE_WORKER_MODEL_DIR"_s, model}, {u"CORVANE_WORKER_ENGINE"_s, u"pocketsphinx"_s}});
        EXPECT_NE(finish(process).status, 0);
        EXPECT_EQ(state(run).status, jobStatus::failed);
        EXPECT_THAT(state(run).message.toStdString(), testing::HasSubstr("pocketsphinx-en-us"));
        QFile::remove(model + name);
        ASSERT_TRUE(QFile::link(installed + name, model + name));
    }
}

TEST_F(Process, ADamagedNetworkIsNamed) {
    const QString audio = path(u"short.wav"_s);
    writeWave(audio, converse({{readerSentence(u"0930"_s)}}).samples);
    const QString installed = QStringLiteral(CORVANE_TEST_MODELS "/recognition/moonshine-base-en/");
    const QString model = path(u"models/recognition/mine-en"_s);
    createPrivateDirectory(model);
    const QStringList files{u"encoder_model.onnx"_s, u"decoder_model_merged.onnx"_s, u"tokens.txt"_s};
    for (const QString& damaged : files) {
        SCOPED_TRACE(damaged.toStdString());
        for (const QString& file : files) {
            QFile::remove(model + u'/' + file);
            ASSERT_TRUE(QFile::link(installed + file, model + u'/' + file));
        }
        QFile::remove(model + u'/' + damaged);
        writeFileAtomically(model + u'/' + damaged, damaged == files.last()
                                                        ? QByteArray("no tokens\n")
                                                        : readFile(installed + damaged).value().left(100000));
        const QString run = path(u"damaged"_s);
        QProcess process;
        start(process, processArguments(audio, run),
              {{u"CORVANE_WORKER_MODELS"_s, path(u"models"_s) + QStringLiteral(":" CORVANE_TEST_MODELS)}});
        EXPECT_EQ(finish(process).status, 1);
        EXPECT_EQ(state(run).status, jobStatus::failed);
        EXPECT_THAT(state(run).message.toStdString(), testing::HasSubstr("“mine-en” is damaged"));
    }
}

TEST_F(Process, AFullDiskIsToldAndLeavesNothingBehind) {
    ffmpeg({u"-f"_s, u"lavfi"_s, u"-i"_s, u"sine=300:d=20"_s, path(u"long.wav"_s)});
    const QString run = path(u"run"_s);
    QProcess process;
    // A limit on the size of a file fails like a full disk, and needs no disk of one's own.
    process.start(u"sh"_s, QStringList{u"-c"_s, u"ulimit -f 64; exec \"$0\" \"$@\""_s,
                                       QStringLiteral(CORVANE_WORKER_EXECUTABLE)} +
                               processArguments(path(u"long.wav"_s), run));
    const Exit exit = finish(process);
    EXPECT_EQ(exit.status, 1);
    EXPECT_EQ(state(run).status, jobStatus::failed);
    EXPECT_EQ(exit.error.trimmed(), state(run).message);
    EXPECT_FALSE(QFile::exists(runFiles::in(run, runFiles::result)));
}

TEST_F(Process, AskedToStopItStopsAtOnceAndSaysSo) {
    const QString audio = conversation();
    for (const int signal : {SIGTERM, SIGINT}) {
        const QString run = path(u"stopped"_s);
        QProcess process;
        start(process, processArguments(audio, run));
        QElapsedTimer timer;
        timer.start();
        while (events(run).empty() && timer.elapsed() < 20000)
            process.waitForFinished(5);
        ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), signal), 0);
        EXPECT_NE(finish(process).status, 0);
        EXPECT_EQ(state(run).status, jobStatus::failed);
        EXPECT_EQ(state(run).message, u"Transcription was interrupted"_s);
        EXPECT_EQ(events(run).back().type, jobEvents::cancelled);
        EXPECT_TRUE(QDir(run).removeRecursively());
    }
}

TEST(CommandLine, UnknownWordsEndWithStatusTwo) {
    for (const QStringList& arguments :
         {QStringList{}, QStringList{u"fly"_s}, QStringList{u"process"_s}, QStringList{u"process"_s, u"--audio"_s},
          QStringList{u"speaker-context"_s, u"--run-dir"_s, u"x"_s}, QStringList{u"models"_s, u"all"_s},
          processArguments(u"a"_s, u"b"_s, u"en"_s, {workerArguments::numSpeakers, u"two"_s})}) {
        const Exit exit = runWorker(arguments);
        EXPECT_EQ(exit.status, 2) << arguments.join(u' ').toStdString();
        EXPECT_FALSE(exit.error.isEmpty());
    }
    EXPECT_THAT(runWorker({u"--version"_s}).output.toStdString(), testing::StartsWith("corvane-worker "));
    const Exit help = runWorker({u"--help"_s});
    EXPECT_EQ(help.status, 0);
    for (const QString& word : {workerArguments::speakerContext, workerArguments::extract, u"corvane-worker models"_s,
                                workerEnvironment::ollamaContextSize})
        EXPECT_TRUE(help.output.contains(word)) << word.toStdString();
}
