// The executable with a language model at its side.
#include "Worker/FakeOllama.h"
#include "Worker/WorkerRun.h"
#include "Worker/WorkerSamples.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"

#include <QDir>

#include <gmock/gmock.h>

#include <csignal>

using namespace corvane;
using namespace corvane::test;
using testing::HasSubstr;

namespace {

const QString words =
    uR"({"summary":"A reading.","speakers":[{"speaker":"SPEAKER_00","short_label":"Reader","context":"Reads.",
         "notable_lines":["nobody ever said this"]},{"speaker":"SPEAKER_77","short_label":"Ghost","context":"Boo."}]})"_s;
const TranscriptLLMContext description{
    u"ollama"_s, u"qwen3:1.7b"_s, u"A reading."_s, {{u"SPEAKER_00"_s, u"Reader"_s, u"Reads."_s, {}}}};

class DescriptionRun : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name) const { return m_directory.filePath(name); }

    [[nodiscard]] Variables variables(const char* use = "ollama") const {
        return {{u"CORVANE_WORKER_ENGINE"_s, u"pocketsphinx"_s},
                {workerEnvironment::llm, QString::fromLatin1(use)},
                {workerEnvironment::ollamaEndpoint, m_ollama.endpoint()}};
    }

    QString reading() {
        const QString file = path(u"reading.wav"_s);
        writeWave(file, converse({{readerSentence(u"0930"_s)}}).samples);
        return file;
    }

    // The sentence on standard error.
    QString describeAgain(const QString& run, int status, const char* use = "ollama") {
        const Exit exit = runWorker({workerArguments::speakerContext, workerArguments::runDir, run,
                                     workerArguments::context, u"A book’s first chapter"_s},
                                    variables(use));
        EXPECT_EQ(exit.status, status) << exit.error.toStdString();
        return exit.error;
    }

    FakeOllama m_ollama;

private:
    QTemporaryDir m_directory;
};

TranscriptResult resultOf(const QString& run) {
    return decodeTranscriptResult(readFile(runFiles::in(run, runFiles::result)).value());
}

} // namespace

TEST_F(DescriptionRun, ATranscriptIsDescribedAndIsWholeWithout) {
    const QString audio = reading();
    m_ollama.say(words);
    const QString described = path(u"described"_s);
    ASSERT_EQ(runWorker(processArguments(audio, described), variables()).status, 0);
    EXPECT_EQ(resultOf(described).llm, description);
    const auto log = events(described);
    EXPECT_EQ(log[log.size() - 2].type, jobEvents::llmCompleted);
    EXPECT_EQ(stringAt(log[log.size() - 2].payload, u"model"_s), u"qwen3:1.7b"_s);

    m_ollama.say({}, Manner::serverError);
    const QString plain = path(u"plain"_s);
    const Exit exit = runWorker(processArguments(audio, plain), variables());
    EXPECT_EQ(exit.status, 0);
    EXPECT_THAT(exit.error.toStdString(), HasSubstr("not summarized: out of memory.\n"));
    EXPECT_EQ(state(plain).status, jobStatus::completed);
    EXPECT_EQ(resultOf(plain).llm, std::nullopt);
    EXPECT_EQ(resultOf(plain).segments, resultOf(described).segments);
    const auto failed = events(plain);
    EXPECT_EQ(failed[failed.size() - 2].type, jobEvents::llmFailed);
    EXPECT_EQ(stringAt(failed[failed.size() - 2].payload, u"error"_s), u"out of memory"_s);
}

TEST_F(DescriptionRun, StoppedWhileTheModelStallsItEndsAtOnceWithItsTranscript) {
    m_ollama.say(words, Manner::stall);
    const QString run = path(u"stopped"_s);
    QProcess process;
    start(process, processArguments(reading(), run), variables());
    for (int turn = 0; m_ollama.requests().empty() && turn < 10000; ++turn)
        process.waitForFinished(5);
    EXPECT_EQ(state(run).message, u"Summarizing"_s);
    ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), SIGTERM), 0);
    EXPECT_TRUE(process.waitForFinished(10000)); // the model's own limit is 45 s
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(state(run).status, jobStatus::completed);
    const auto log = events(run);
    EXPECT_EQ(log[log.size() - 2].type, jobEvents::llmFailed);
    EXPECT_EQ(log.back().type, jobEvents::completed);
    const auto result = decodeTranscriptResult(readFile(runFiles::in(run, runFiles::result)).value());
    EXPECT_FALSE(result.segments.empty());
    EXPECT_FALSE(result.llm);
}

TEST_F(DescriptionRun, WithoutSpeechTheModelIsNotAsked) {
    ffmpeg({u"-f"_s, u"lavfi"_s, u"-i"_s, u"anoisesrc=d=3:a=0.05:seed=1"_s, path(u"noise.wav"_s)});
    const QString run = path(u"noise"_s);
    EXPECT_EQ(runWorker(processArguments(path(u"noise.wav"_s), run), variables()).status, 0);
    const auto log = events(run);
    EXPECT_EQ(log[log.size() - 2].type, jobEvents::llmSkipped);
    EXPECT_TRUE(m_ollama.requests().empty());
}

TEST_F(DescriptionRun, AFinishedRunIsDescribedAgainAndKeepsAllElse) {
    const QString run = path(u"run"_s);
    createPrivateDirectory(run);
    const QString file = runFiles::in(run, runFiles::result);
    const QByteArray before = R"({"metadata":{"language":"en","made":{"by":[1,null,true]}},"of_another_program":[1.5],
        "segments":[{"start":0,"end":2,"text":"Once upon a time.","speaker":"SPEAKER_00","mood":"calm"}],
        "speakers":[{"speaker":"SPEAKER_00","duration":2,"examples":[]}],"speaker_names":{},
        "llm":{"provider":"ollama","model":"old","summary":"Old.","speaker_context":[]}})";
    writeFileAtomically(file, before);
    // Somebody names the speaker while the model is at work.
    m_ollama.beforeAnswer = [&] {
        writeFileAtomically(
            file, QByteArray(before).replace(R"("speaker_names":{})", R"("speaker_names":{"SPEAKER_00":"Ann"})"));
    };
    m_ollama.say(words);
    EXPECT_EQ(describeAgain(run, 0), QString());
    const TranscriptResult after = resultOf(run);
    EXPECT_EQ(after.llm, description);
    EXPECT_EQ(after.speakerNames.at(u"SPEAKER_00"_s), u"Ann"_s);
    EXPECT_EQ(after.metadata, decodeTranscriptResult(before).metadata);
    const QByteArray content = readFile(file).value();
    EXPECT_TRUE(content.contains("\"of_another_program\"") && content.contains("\"mood\": \"calm\""));
    const auto requests = m_ollama.requests();
    const auto& messages = *requests[0].body.at(u"messages"_s).arrayValue();
    EXPECT_THAT(stringAt(*messages[0].objectValue(), u"content"_s)->toStdString(), HasSubstr("A book’s first chapter"));
}

TEST_F(DescriptionRun, WhatCannotBeDescribedIsToldAndLeftAlone) {
    const QString run = path(u"run"_s);
    EXPECT_THAT(describeAgain(run, 1).toStdString(), HasSubstr("no run in"));
    createPrivateDirectory(run);
    EXPECT_THAT(describeAgain(run, 1).toStdString(), HasSubstr("has no transcript"));
    const QString file = runFiles::in(run, runFiles::result);
    writeFileAtomically(file, "{\"metadata\":{},\"segments\":[{}],\"speakers\":[]}");
    EXPECT_THAT(describeAgain(run, 1).toStdString(), HasSubstr("is damaged"));
    writeFileAtomically(file, "{\"metadata\":{},\"segments\":[],\"speakers\":[]}");
    EXPECT_THAT(describeAgain(run, 1).toStdString(), HasSubstr("Nobody speaks"));
    const QByteArray whole =
        R"({"metadata":{},"segments":[{"start":0,"end":2,"text":"Hello you.","speaker":"A/B"}],"speakers":[]})";
    writeFileAtomically(file, whole);
    EXPECT_THAT(describeAgain(run, 1, "off").toStdString(), HasSubstr("switched off"));
    m_ollama.say(u"I would rather not."_s);
    EXPECT_THAT(describeAgain(run, 1).toStdString(), HasSubstr("did not answer in the asked form"));
    EXPECT_EQ(readFile(file), whole);
}

TEST_F(DescriptionRun, WhatIsInstalledIsListed) {
    const QString model = path(u"models/recognition/zipformer-fr"_s);
    createPrivateDirectory(model);
    for (const char* name : {"encoder.onnx", "decoder.onnx", "joiner.onnx", "tokens.txt"})
        writeFileAtomically(model + u'/' + QString::fromLatin1(name), "x");
    const Exit exit = runWorker({u"models"_s}, {{u"CORVANE_WORKER_MODELS"_s, path(u"models"_s)}});
    EXPECT_EQ(exit.status, 0);
    for (const QString& line : {u"zipformer-fr: fr, transducer, in "_s + model, u"pocketsphinx-en-us: en"_s,
                                u"\n  "_s + path(u"models"_s) + u'\n'})
        EXPECT_THAT(exit.output.toStdString(), HasSubstr(line.toStdString()));
    const Exit without = runWorker({u"models"_s}, {{u"CORVANE_WORKER_MODEL_DIR"_s, path(u"nothing"_s)}});
    EXPECT_THAT(without.output.toStdString(), HasSubstr("missing: The speech model is not installed properly"));
}
